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
    // The window manager put the window into a frame of its own: the frame lets clicks through too,
    // and the window's empty region is set again for managers that copy it to the frame once they manage.
    void framed(xcb_window_t window, xcb_window_t frame) const;

private:
    void clearInputShape(xcb_window_t window) const;
    void refuseFocus(xcb_window_t window) const;

    xcb_connection_t* connection_;
    xcb_window_t root_;
    Atoms atoms_;
};

}  // namespace quellton::x11
