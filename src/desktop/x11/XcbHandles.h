#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace quellton::x11 {

// xcb hands out replies and events as malloc'ed blocks that the caller frees.
struct FreeDeleter {
    void operator()(void* block) const { std::free(block); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

struct DisconnectDeleter {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, DisconnectDeleter>;

// A private connection to the display named by DISPLAY; empty when that fails.
// `screenNumber` receives the default screen of that display.
Connection openConnection(int* screenNumber = nullptr);

// The root window of a connection's screen, or XCB_WINDOW_NONE.
xcb_window_t rootWindow(xcb_connection_t* connection, int screenNumber);

}  // namespace quellton::x11
