#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
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
    _NET_CLIENT_LIST_STACKING,
    _NET_ACTIVE_WINDOW,
    _NET_SUPPORTED,
    _NET_SUPPORTING_WM_CHECK,
    _NET_RESTACK_WINDOW,
    _NET_WM_USER_TIME,
    _NET_WM_USER_TIME_WINDOW,
    _NET_FRAME_EXTENTS,
    _NET_WORKAREA,
    WM_STATE,
    WM_PROTOCOLS,
    WM_TAKE_FOCUS,
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

// WM_HINTS is nine 32-bit fields: flags, input, initial state, icon pixmap, window, x, y, mask, group.
inline constexpr std::size_t wmHintsLength = 9;

// Property access; a missing property or one of another type reads as empty.
std::vector<std::uint32_t> readValues32(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, xcb_atom_t type);
std::vector<xcb_atom_t> readAtoms(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);
std::vector<std::uint32_t> readCardinals(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);
std::vector<xcb_window_t> readWindows(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);
bool hasProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property);
// WM_CLASS: the instance and the class name; empty strings when unset.
struct WmClass {
    std::string instance, className;
};
WmClass readWmClass(xcb_connection_t* c, xcb_window_t window);

void writeAtoms(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, const std::vector<xcb_atom_t>& atoms);
void writeCardinal(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, std::uint32_t value);

// Asks the window manager to change a mapped window's state or desktop (EWMH client messages).
void requestStateAdd(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t state,
                     xcb_atom_t first, xcb_atom_t second = XCB_ATOM_NONE);
// Asks the window manager to stack a window directly above or below a sibling (XCB_STACK_MODE_*).
void requestRestack(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t restackAtom,
                    xcb_window_t sibling, std::uint32_t stackMode);
void requestDesktop(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t desktopAtom,
                    std::uint32_t desktop);

}  // namespace quellton::x11
