#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Ewmh.h"
#include "XcbHandles.h"

namespace quellton::test {

// One top-level window that a taskbar lists: a normal window that does not ask to be left out.
struct ManagedWindow {
    xcb_window_t id = XCB_WINDOW_NONE;
    bool hasIcon = false;  // _NET_WM_ICON
};

// The windows an EWMH window manager manages (_NET_CLIENT_LIST), read over a connection of the
// test's own. A program's windows are found by _NET_WM_PID and WM_CLASS, never by title.
// Used only once connected() said yes.
class ManagedWindows {
public:
    ManagedWindows() {
        int screen = 0;
        connection = x11::openConnection(&screen);
        if (!connection) return;
        root = x11::rootWindow(connection.get(), screen);
        atoms = std::make_unique<x11::Atoms>(connection.get());
    }
    bool connected() const { return bool(connection); }

    std::vector<ManagedWindow> inTaskbar(pid_t pid, const std::string& wmClass) {
        std::vector<ManagedWindow> found;
        xcb_connection_t* c = connection.get();
        const auto& a = *atoms;
        for (xcb_window_t id : x11::readWindows(c, root, a[x11::Atom::_NET_CLIENT_LIST])) {
            const auto pids = x11::readCardinals(c, id, intern("_NET_WM_PID"));
            if (pids.size() != 1 || pid_t(pids[0]) != pid || classOf(id) != wmClass) continue;
            const auto types = x11::readAtoms(c, id, a[x11::Atom::_NET_WM_WINDOW_TYPE]);
            const bool normal = types.empty() || types.front() == a[x11::Atom::_NET_WM_WINDOW_TYPE_NORMAL];
            const auto states = x11::readAtoms(c, id, a[x11::Atom::_NET_WM_STATE]);
            if (normal && std::ranges::count(states, a[x11::Atom::_NET_WM_STATE_SKIP_TASKBAR]) == 0)
                found.push_back({id, x11::hasProperty(c, id, intern("_NET_WM_ICON"))});
        }
        return found;
    }

    xcb_window_t active() {
        const auto windows = x11::readWindows(connection.get(), root, (*atoms)[x11::Atom::_NET_ACTIVE_WINDOW]);
        return windows.empty() ? xcb_window_t(XCB_WINDOW_NONE) : windows.front();
    }

    // Whether `upper` is stacked above `lower` (_NET_CLIENT_LIST_STACKING, bottom first).
    bool above(xcb_window_t upper, xcb_window_t lower) {
        const auto stack = x11::readWindows(connection.get(), root, (*atoms)[x11::Atom::_NET_CLIENT_LIST_STACKING]);
        const auto u = std::ranges::find(stack, upper), l = std::ranges::find(stack, lower);
        return u != stack.end() && l != stack.end() && u > l;
    }

    // Whether an XEmbed system tray owns _NET_SYSTEM_TRAY_S0.
    bool systemTrayPresent() {
        xcb_connection_t* c = connection.get();
        const x11::Reply<xcb_get_selection_owner_reply_t> owner(
            xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, intern("_NET_SYSTEM_TRAY_S0")), nullptr));
        return owner && owner->owner != XCB_WINDOW_NONE;
    }

    // The centre, on the screen, of a small shown window of that class inside another window:
    // an icon in an XEmbed tray. Nothing when there is none.
    std::optional<std::pair<int, int>> embeddedIconCentre(const std::string& wmClass) {
        for (xcb_window_t top : childrenOf(root))
            for (xcb_window_t child : childrenOf(top))
                if (auto centre = findEmbedded(child, wmClass)) return centre;
        return std::nullopt;
    }

    // Shown override-redirect windows of that class: popup menus.
    std::vector<xcb_window_t> popups(const std::string& wmClass) {
        std::vector<xcb_window_t> found;
        for (xcb_window_t window : childrenOf(root)) {
            const auto attributes = attributesOf(window);
            if (attributes && attributes->override_redirect && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                classOf(window) == wmClass)
                found.push_back(window);
        }
        return found;
    }

private:
    xcb_atom_t intern(const char* name) {
        const x11::Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            connection.get(), xcb_intern_atom(connection.get(), 0, uint16_t(std::strlen(name)), name), nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    std::string classOf(xcb_window_t window) { return x11::readWmClass(connection.get(), window).className; }

    std::vector<xcb_window_t> childrenOf(xcb_window_t window) {
        xcb_connection_t* c = connection.get();
        const x11::Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
        if (!tree) return {};
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        return {children, children + xcb_query_tree_children_length(tree.get())};
    }

    x11::Reply<xcb_get_window_attributes_reply_t> attributesOf(xcb_window_t window) {
        xcb_connection_t* c = connection.get();
        return x11::Reply<xcb_get_window_attributes_reply_t>(
            xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), nullptr));
    }

    std::optional<std::pair<int, int>> findEmbedded(xcb_window_t window, const std::string& wmClass) {
        xcb_connection_t* c = connection.get();
        const auto attributes = attributesOf(window);
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return std::nullopt;
        if (classOf(window) == wmClass) {
            const x11::Reply<xcb_get_geometry_reply_t> geometry(
                xcb_get_geometry_reply(c, xcb_get_geometry(c, window), nullptr));
            const x11::Reply<xcb_translate_coordinates_reply_t> origin(
                xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, window, root, 0, 0), nullptr));
            // Small, unlike the managed windows that the window manager also reparents into its frames.
            if (geometry && origin && geometry->width <= 64 && geometry->height <= 64)
                return std::pair(origin->dst_x + geometry->width / 2, origin->dst_y + geometry->height / 2);
        }
        for (xcb_window_t child : childrenOf(window))
            if (auto centre = findEmbedded(child, wmClass)) return centre;
        return std::nullopt;
    }

    x11::Connection connection;
    xcb_window_t root = XCB_WINDOW_NONE;
    std::unique_ptr<x11::Atoms> atoms;
};

}  // namespace quellton::test
