#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace quellton::x11 {

// Every X11 atom the desktop code uses, by its X name.
enum class Atom {
    _NET_WM_WINDOW_TYPE,
    _NET_WM_WINDOW_TYPE_DESKTOP,
    _NET_WM_WINDOW_TYPE_NORMAL,
    _NET_WM_STATE,
    _NET_WM_STATE_BELOW,
    _NET_WM_STATE_STICKY,
    _NET_WM_STATE_SKIP_TASKBAR,
    _NET_WM_STATE_SKIP_PAGER,
    _NET_WM_STATE_FULLSCREEN,
    _NET_WM_STATE_MAXIMIZED_VERT,
    _NET_WM_STATE_MAXIMIZED_HORZ,
    _NET_WM_STATE_HIDDEN,
    _NET_WM_DESKTOP,
    _NET_CURRENT_DESKTOP,
    _NET_CLIENT_LIST,
    _NET_ACTIVE_WINDOW,
    _NET_FRAME_EXTENTS,
    _NET_WORKAREA,
    WM_STATE,
    count
};

// _NET_WM_DESKTOP of a window shown on every desktop.
inline constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

// The atoms of one connection, interned together at construction.
class Atoms {
public:
    explicit Atoms(xcb_connection_t* connection);
    xcb_atom_t operator[](Atom atom) const { return atoms_[static_cast<std::size_t>(atom)]; }

private:
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> atoms_{};
};

// Property access; a missing property or one of another type reads as empty.
std::vector<xcb_atom_t> readAtoms(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);
std::vector<std::uint32_t> readCardinals(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);
std::vector<xcb_window_t> readWindows(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);
bool hasProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);

void writeAtoms(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, const std::vector<xcb_atom_t>& atoms);
void writeCardinal(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, std::uint32_t value);

// Asks the window manager to change a mapped window's state or desktop (EWMH client messages).
void requestStateAdd(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t state,
                     xcb_atom_t first, xcb_atom_t second = XCB_ATOM_NONE);
void requestDesktop(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t desktopAtom,
                    std::uint32_t desktop);

}  // namespace quellton::x11
