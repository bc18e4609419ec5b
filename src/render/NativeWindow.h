#pragma once

#include <cstdint>

class QObject;
class QWindow;

namespace quellton {

// What the window system calls a Qt window, for EGL: the X11 window id, or on Qt's Wayland
// platform the wl_surface on Qt's own connection (winId() is no surface there). 0 while the
// window has no surface.
std::uintptr_t nativeWindowHandle(QWindow& window);

// On Qt's Wayland platform, the platform window, whose signal wlSurfaceDestroyed() comes just before
// Qt destroys the wl_surface (also when the window only hides); null elsewhere.
QObject* waylandPlatformWindow(QWindow& window);

}  // namespace quellton
