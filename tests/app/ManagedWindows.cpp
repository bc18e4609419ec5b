#include "ManagedWindows.h"

#include <algorithm>
#include <cstring>

namespace quellton::test {

using x11::Atom;

ManagedWindows::ManagedWindows() {
    int screen = 0;
    connection = x11::openConnection(&screen);
    if (!connection) return;
    root = x11::rootWindow(connection.get(), screen);
    atoms = std::make_unique<x11::Atoms>(connection.get());
    pidAtom = intern("_NET_WM_PID");
    iconAtom = intern("_NET_WM_ICON");
    stackingAtom = intern("_NET_CLIENT_LIST_STACKING");
}

xcb_atom_t ManagedWindows::intern(const char* name) {
    const x11::Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection.get(), xcb_intern_atom(connection.get(), 0, uint16_t(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

// WM_CLASS holds instance and class, each ending in a zero byte.
std::string ManagedWindows::classOf(xcb_window_t window) {
    xcb_connection_t* c = connection.get();
    const x11::Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256), nullptr));
    if (!reply) return {};
    const std::string text(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           std::size_t(xcb_get_property_value_length(reply.get())));
    const std::size_t end = text.find('\0');
    return end == std::string::npos ? std::string() : std::string(text.substr(end + 1).c_str());
}

std::vector<ManagedWindow> ManagedWindows::of(pid_t pid, const std::string& wmClass) {
    std::vector<ManagedWindow> found;
    if (!connection) return found;
    xcb_connection_t* c = connection.get();
    const auto& a = *atoms;
    for (xcb_window_t id : x11::readWindows(c, root, a[Atom::_NET_CLIENT_LIST])) {
        const auto pids = x11::readCardinals(c, id, pidAtom);
        if (pids.size() != 1 || pid_t(pids[0]) != pid) continue;
        if (classOf(id) != wmClass) continue;

        const auto types = x11::readAtoms(c, id, a[Atom::_NET_WM_WINDOW_TYPE]);
        const auto states = x11::readAtoms(c, id, a[Atom::_NET_WM_STATE]);
        ManagedWindow window;
        window.id = id;
        window.normal = types.empty() || types.front() == a[Atom::_NET_WM_WINDOW_TYPE_NORMAL];
        window.skipTaskbar = std::ranges::count(states, a[Atom::_NET_WM_STATE_SKIP_TASKBAR]) > 0;
        window.hasIcon = x11::hasProperty(c, id, iconAtom);
        found.push_back(window);
    }
    return found;
}

std::vector<ManagedWindow> ManagedWindows::inTaskbar(pid_t pid, const std::string& wmClass) {
    std::vector<ManagedWindow> windows = of(pid, wmClass);
    std::erase_if(windows, [](const ManagedWindow& w) { return !w.inTaskbar(); });
    return windows;
}

xcb_window_t ManagedWindows::active() {
    if (!connection) return XCB_WINDOW_NONE;
    const auto windows = x11::readWindows(connection.get(), root, (*atoms)[Atom::_NET_ACTIVE_WINDOW]);
    return windows.empty() ? xcb_window_t(XCB_WINDOW_NONE) : windows.front();
}

bool ManagedWindows::above(xcb_window_t upper, xcb_window_t lower) {
    if (!connection) return false;
    const auto stack = x11::readWindows(connection.get(), root, stackingAtom);
    const auto u = std::ranges::find(stack, upper), l = std::ranges::find(stack, lower);
    return u != stack.end() && l != stack.end() && u > l;
}

}  // namespace quellton::test

namespace quellton::test {

namespace {

std::vector<xcb_window_t> childrenOf(xcb_connection_t* c, xcb_window_t window) {
    const x11::Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    if (!tree) return {};
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    return {children, children + xcb_query_tree_children_length(tree.get())};
}

}  // namespace

bool ManagedWindows::systemTrayPresent() {
    if (!connection) return false;
    const xcb_atom_t selection = intern("_NET_SYSTEM_TRAY_S0");
    const x11::Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

std::optional<std::pair<int, int>> ManagedWindows::embeddedIconCentre(const std::string& wmClass) {
    if (!connection) return std::nullopt;
    for (xcb_window_t top : childrenOf(connection.get(), root))
        for (xcb_window_t child : childrenOf(connection.get(), top))
            if (auto centre = findEmbedded(child, wmClass)) return centre;
    return std::nullopt;
}

std::optional<std::pair<int, int>> ManagedWindows::findEmbedded(xcb_window_t window, const std::string& wmClass) {
    xcb_connection_t* c = connection.get();
    const x11::Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return std::nullopt;
    if (classOf(window) == wmClass) {
        const x11::Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, window), nullptr));
        const x11::Reply<xcb_translate_coordinates_reply_t> origin(
            xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, window, root, 0, 0), nullptr));
        // Small, unlike the managed windows that the window manager also reparents into its frames.
        if (geometry && origin && geometry->width <= 64 && geometry->height <= 64)
            return std::pair(origin->dst_x + geometry->width / 2, origin->dst_y + geometry->height / 2);
    }
    for (xcb_window_t child : childrenOf(c, window))
        if (auto centre = findEmbedded(child, wmClass)) return centre;
    return std::nullopt;
}

std::vector<xcb_window_t> ManagedWindows::popups(const std::string& wmClass) {
    std::vector<xcb_window_t> found;
    if (!connection) return found;
    xcb_connection_t* c = connection.get();
    for (xcb_window_t window : childrenOf(c, root)) {
        const x11::Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), nullptr));
        if (attributes && attributes->override_redirect && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
            classOf(window) == wmClass)
            found.push_back(window);
    }
    return found;
}

}  // namespace quellton::test
