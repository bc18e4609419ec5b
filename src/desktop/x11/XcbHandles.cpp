#include "XcbHandles.h"

namespace quellton::x11 {

Connection openConnection(int* screenNumber) {
    int number = 0;
    Connection connection(xcb_connect(nullptr, &number));
    if (!connection || xcb_connection_has_error(connection.get())) return {};
    if (screenNumber) *screenNumber = number;
    return connection;
}

xcb_window_t rootWindow(xcb_connection_t* connection, int screenNumber) {
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; it.rem > 0; xcb_screen_next(&it), ++i) {
        if (i == screenNumber) return it.data->root;
    }
    return XCB_WINDOW_NONE;
}

}  // namespace quellton::x11
