#pragma once

#include <xcb/xcb.h>

#include "Ewmh.h"

namespace quellton::x11 {

// Makes a top-level window the desktop layer: desktop type, below every other window, on every
// workspace, out of taskbar and pager, never focused, and with an empty input region so clicks fall through.
class DesktopWindow {
public:
    DesktopWindow(xcb_connection_t* connection, xcb_window_t root);

    // On the created, still unmapped window: the window manager reads these when it maps it.
    void beforeMap(xcb_window_t window) const;
    // On the mapped window: managers that only honour requests get them as client messages.
    void afterMap(xcb_window_t window) const;

private:
    void clearInputShape(xcb_window_t window) const;
    void refuseFocus(xcb_window_t window) const;

    xcb_connection_t* connection_;
    xcb_window_t root_;
    Atoms atoms_;
};

}  // namespace quellton::x11
