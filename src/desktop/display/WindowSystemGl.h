#pragma once

#include <string>

struct wl_display;

namespace quellton {

// Lets the shader library make its contexts on the application's display, so windows and offscreen
// work share one group. Call after the QGuiApplication exists and before the library's first use.
// False (with a reason) when this window system offers no OpenGL 3.3 through EGL.
// On Wayland, GL lives on a connection of our own (for the wallpaper's surfaces), or with
// `toolkitWayland` on Qt's, where Qt's windows (Canvas) are: EGL needs the surfaces' connection.
bool useWindowSystemGl(std::string* error = nullptr, bool toolkitWayland = false);

// Our own Wayland connection is this socket, handed to the process by its compositor, rather than
// one to WAYLAND_DISPLAY. Call before useWindowSystemGl.
void useWaylandSocket(int fd);

// On Wayland, the connection of our own that the GL contexts and the wallpaper's surfaces live
// on (the toolkit keeps its own for its windows); null until useWindowSystemGl made it, and elsewhere.
wl_display* windowSystemWaylandDisplay();
// Whether that connection is the one the compositor handed over (useWaylandSocket).
bool windowSystemFromShell();

}  // namespace quellton
