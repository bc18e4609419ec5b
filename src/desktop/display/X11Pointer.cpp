#include "X11Pointer.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace quellton {

namespace {

struct Connection {
    xcb_connection_t* connection = nullptr;
    xcb_window_t root = 0;
    Connection() {
        int screenNumber = 0;
        connection = xcb_connect(nullptr, &screenNumber);
        if (xcb_connection_has_error(connection)) return;
        xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
        for (int i = 0; i < screenNumber && it.rem; ++i) xcb_screen_next(&it);
        if (it.rem) root = it.data->root;
    }
    ~Connection() { xcb_disconnect(connection); }
};

}  // namespace

std::optional<std::array<double, 2>> x11PointerPosition() {
    // One connection per thread: xcb connections are cheap, and the render thread must not share Qt's.
    thread_local Connection x;
    if (xcb_connection_has_error(x.connection) || !x.root) return std::nullopt;
    std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)> reply(
        xcb_query_pointer_reply(x.connection, xcb_query_pointer(x.connection, x.root), nullptr), &std::free);
    if (!reply) return std::nullopt;
    return std::array<double, 2>{double(reply->root_x), double(reply->root_y)};
}

}  // namespace quellton
