#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Ewmh.h"
#include "XcbHandles.h"

namespace quellton::test {

// One top-level window as the window manager and a taskbar see it.
struct ManagedWindow {
    xcb_window_t id = XCB_WINDOW_NONE;
    bool normal = false;  // _NET_WM_WINDOW_TYPE_NORMAL, or no type at all
    bool skipTaskbar = false;
    bool hasIcon = false;  // _NET_WM_ICON

    // What a taskbar lists: a normal window that does not ask to be left out.
    bool inTaskbar() const { return normal && !skipTaskbar; }
};

// The windows an EWMH window manager manages (_NET_CLIENT_LIST), read over a connection of the
// test's own. A program's windows are found by _NET_WM_PID and WM_CLASS, never by title.
class ManagedWindows {
public:
    ManagedWindows();
    bool connected() const { return bool(connection); }

    std::vector<ManagedWindow> of(pid_t pid, const std::string& wmClass);
    std::vector<ManagedWindow> inTaskbar(pid_t pid, const std::string& wmClass);
    xcb_window_t active();
    // Whether `upper` is stacked above `lower` (_NET_CLIENT_LIST_STACKING, bottom first).
    bool above(xcb_window_t upper, xcb_window_t lower);

    // Whether an XEmbed system tray owns _NET_SYSTEM_TRAY_S0.
    bool systemTrayPresent();
    // The centre, on the screen, of a small shown window of that class inside another window:
    // an icon in an XEmbed tray. Nothing when there is none.
    std::optional<std::pair<int, int>> embeddedIconCentre(const std::string& wmClass);
    // Shown override-redirect windows of that class: popup menus.
    std::vector<xcb_window_t> popups(const std::string& wmClass);

private:
    xcb_atom_t intern(const char* name);
    std::string classOf(xcb_window_t window);
    std::optional<std::pair<int, int>> findEmbedded(xcb_window_t parent, const std::string& wmClass);

    x11::Connection connection;
    xcb_window_t root = XCB_WINDOW_NONE;
    std::unique_ptr<x11::Atoms> atoms;
    xcb_atom_t pidAtom = XCB_ATOM_NONE, iconAtom = XCB_ATOM_NONE, stackingAtom = XCB_ATOM_NONE;
};

}  // namespace quellton::test
