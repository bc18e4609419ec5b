#include "DesktopWindow.h"

#include <xcb/xfixes.h>

#include <algorithm>

#include "XcbHandles.h"

namespace quellton::x11 {

DesktopWindow::DesktopWindow(xcb_connection_t* connection, xcb_window_t root)
    : connection_(connection), root_(root), atoms_(connection) {}

void DesktopWindow::beforeMap(xcb_window_t window) const {
    writeAtoms(connection_, window, atoms_[Atom::_NET_WM_WINDOW_TYPE], {atoms_[Atom::_NET_WM_WINDOW_TYPE_DESKTOP]});
    // Keep states the toolkit already set; add ours once.
    std::vector<xcb_atom_t> states = readAtoms(connection_, window, atoms_[Atom::_NET_WM_STATE]);
    for (Atom wanted : {Atom::_NET_WM_STATE_BELOW, Atom::_NET_WM_STATE_STICKY, Atom::_NET_WM_STATE_SKIP_TASKBAR,
                        Atom::_NET_WM_STATE_SKIP_PAGER}) {
        if (std::ranges::find(states, atoms_[wanted]) == states.end()) states.push_back(atoms_[wanted]);
    }
    writeAtoms(connection_, window, atoms_[Atom::_NET_WM_STATE], states);
    writeCardinal(connection_, window, atoms_[Atom::_NET_WM_DESKTOP], allDesktops);
    refuseFocus(window);
    clearInputShape(window);
    xcb_flush(connection_);
}

void DesktopWindow::afterMap(xcb_window_t window) const {
    const xcb_atom_t state = atoms_[Atom::_NET_WM_STATE];
    requestStateAdd(connection_, root_, window, state, atoms_[Atom::_NET_WM_STATE_BELOW],
                    atoms_[Atom::_NET_WM_STATE_STICKY]);
    requestStateAdd(connection_, root_, window, state, atoms_[Atom::_NET_WM_STATE_SKIP_TASKBAR],
                    atoms_[Atom::_NET_WM_STATE_SKIP_PAGER]);
    requestDesktop(connection_, root_, window, atoms_[Atom::_NET_WM_DESKTOP], allDesktops);
    refuseFocus(window);  // the toolkit may have written its protocols again while showing
    clearInputShape(window);
    xcb_flush(connection_);
}

void DesktopWindow::refuseFocus(xcb_window_t window) const {
    // ICCCM "no input": input hint false and no WM_TAKE_FOCUS, so no manager ever focuses the window.
    const xcb_atom_t protocols = atoms_[Atom::WM_PROTOCOLS];
    std::vector<xcb_atom_t> kept = readAtoms(connection_, window, protocols);
    if (std::erase(kept, atoms_[Atom::WM_TAKE_FOCUS]) > 0) writeAtoms(connection_, window, protocols, kept);

    constexpr std::uint32_t inputHint = 1;
    std::vector<std::uint32_t> hints = readValues32(connection_, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS);
    hints.resize(std::max<std::size_t>(hints.size(), wmHintsLength), 0);
    if ((hints[0] & inputHint) && hints[1] == 0) return;
    hints[0] |= inputHint;
    hints[1] = 0;
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32,
                        std::uint32_t(hints.size()), hints.data());
}

void DesktopWindow::framed(xcb_window_t window, xcb_window_t frame) const {
    if (frame == root_ || frame == XCB_WINDOW_NONE) return;
    clearInputShape(window);
    clearInputShape(frame);
    xcb_flush(connection_);
}

void DesktopWindow::clearInputShape(xcb_window_t window) const {
    // The XFixes request needs the extension's version handshake on this connection first.
    const Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection_, xcb_xfixes_query_version(connection_, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION),
        nullptr));
    if (!version || version->major_version < 2) return;
    const xcb_xfixes_region_t empty = xcb_generate_id(connection_);
    xcb_xfixes_create_region(connection_, empty, 0, nullptr);
    xcb_xfixes_set_window_shape_region(connection_, window, XCB_SHAPE_SK_INPUT, 0, 0, empty);
    xcb_xfixes_destroy_region(connection_, empty);
}

}  // namespace quellton::x11
