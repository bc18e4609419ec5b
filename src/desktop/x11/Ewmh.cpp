#include "Ewmh.h"

#include <cstring>
#include <string_view>

#include "XcbHandles.h"

namespace quellton::x11 {

namespace {

constexpr std::array<std::string_view, static_cast<std::size_t>(Atom::count)> atomNames{
    "_NET_WM_WINDOW_TYPE",        "_NET_WM_WINDOW_TYPE_DESKTOP", "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_STATE",              "_NET_WM_STATE_BELOW",         "_NET_WM_STATE_STICKY",
    "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",    "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_HIDDEN",
    "_NET_WM_DESKTOP",            "_NET_CURRENT_DESKTOP",        "_NET_CLIENT_LIST",
    "_NET_CLIENT_LIST_STACKING",  "_NET_ACTIVE_WINDOW",          "_NET_SUPPORTED",
    "_NET_SUPPORTING_WM_CHECK",   "_NET_RESTACK_WINDOW",         "_NET_WM_USER_TIME",
    "_NET_WM_USER_TIME_WINDOW",   "_NET_FRAME_EXTENTS",
    "_NET_WORKAREA",              "WM_STATE",                    "WM_PROTOCOLS",
    "WM_TAKE_FOCUS"};

constexpr std::uint32_t sourceApplication = 1;  // EWMH source indication of a normal client
// Restacking on behalf of the desktop is what pagers do; managers honour it without focus-stealing checks.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t stateAdd = 1;

template <typename T>
std::vector<T> readValues(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, xcb_atom_t type) {
    const xcb_get_property_cookie_t cookie = xcb_get_property(c, 0, window, property, type, 0, 4096);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(c, cookie, nullptr));
    if (!reply || reply->type != type || reply->format != 32) return {};
    const auto* data = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return std::vector<T>(data, data + xcb_get_property_value_length(reply.get()) / 4);
}

void sendToRoot(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                std::array<std::uint32_t, 5> data) {
    xcb_client_message_event_t event;
    std::memset(&event, 0, sizeof event);
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    std::memcpy(event.data.data32, data.data(), sizeof event.data.data32);
    xcb_send_event(c, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

}  // namespace

Atoms::Atoms(xcb_connection_t* connection) {
    std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies{};
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        cookies[i] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(atomNames[i].size()),
                                     atomNames[i].data());
    }
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookies[i], nullptr));
        atoms_[i] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
}

std::vector<std::uint32_t> readValues32(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property,
                                        xcb_atom_t type) {
    return readValues<std::uint32_t>(c, window, property, type);
}

std::vector<xcb_atom_t> readAtoms(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property) {
    return readValues<xcb_atom_t>(c, window, property, XCB_ATOM_ATOM);
}

std::vector<std::uint32_t> readCardinals(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property) {
    return readValues<std::uint32_t>(c, window, property, XCB_ATOM_CARDINAL);
}

std::vector<xcb_window_t> readWindows(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property) {
    return readValues<xcb_window_t>(c, window, property, XCB_ATOM_WINDOW);
}

bool hasProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property) {
    const xcb_get_property_cookie_t cookie = xcb_get_property(c, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 0);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(c, cookie, nullptr));
    return reply && reply->type != XCB_ATOM_NONE;
}

WmClass readWmClass(xcb_connection_t* c, xcb_window_t window) {
    const xcb_get_property_cookie_t cookie = xcb_get_property(c, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(c, cookie, nullptr));
    if (!reply || reply->format != 8) return {};
    const auto* data = static_cast<const char*>(xcb_get_property_value(reply.get()));
    const std::string both(data, std::size_t(xcb_get_property_value_length(reply.get())));
    // Two strings, each ended by a NUL.
    const std::size_t split = both.find('\0');
    WmClass result;
    result.instance = both.substr(0, split);
    if (split != std::string::npos) {
        const std::string rest = both.substr(split + 1);
        result.className = rest.substr(0, rest.find('\0'));
    }
    return result;
}

void writeAtoms(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, const std::vector<xcb_atom_t>& atoms) {
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

void writeCardinal(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, std::uint32_t value) {
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32, 1, &value);
}

void requestStateAdd(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t state,
                     xcb_atom_t first, xcb_atom_t second) {
    sendToRoot(c, root, window, state, {stateAdd, first, second, sourceApplication, 0});
}

void requestRestack(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t restackAtom,
                    xcb_window_t sibling, std::uint32_t stackMode) {
    sendToRoot(c, root, window, restackAtom, {sourcePager, sibling, stackMode, 0, 0});
}

void requestDesktop(xcb_connection_t* c, xcb_window_t root, xcb_window_t window, xcb_atom_t desktopAtom,
                    std::uint32_t desktop) {
    sendToRoot(c, root, window, desktopAtom, {desktop, sourceApplication, 0, 0, 0});
}

}  // namespace quellton::x11
