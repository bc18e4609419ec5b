#pragma once

#include <string>

namespace quellton {

enum class DisplayServer {
    none,                     // no X server answers and no Wayland socket exists
    x11,                      // an X server, also XWayland where the user asked for it
    wayland,                  // a compositor with a background layer (wlr-layer-shell)
    waylandWithoutBackground  // a compositor with no place behind the desktop (GNOME)
};

// Picks the display server before the toolkit starts (it aborts without one) and asks the toolkit
// to use it, unless the user chose a platform with QT_QPA_PLATFORM.
DisplayServer chooseDisplayServer();

// Whether XDG_CURRENT_DESKTOP names GNOME Shell, whose picture our Shell extension hosts.
bool isGnomeShell(const char* desktop);

// The one line for a Wayland session without a background layer, other than GNOME Shell's.
std::string noBackgroundLayerMessage();

}  // namespace quellton
