#include "RawClickMonitor.h"

#include <xcb/xinput.h>

#include <QSocketNotifier>

namespace quellton::x11 {

namespace {

constexpr std::uint32_t leftButton = 1;

struct RawPressMask {
    xcb_input_event_mask_t head;
    std::uint32_t bits;
};

}  // namespace

RawClickMonitor::RawClickMonitor(QObject* parent) : QObject(parent) {}

RawClickMonitor::~RawClickMonitor() = default;

bool RawClickMonitor::start() {
    if (notifier_) return true;
    int screen = 0;
    Connection connection = openConnection(&screen);
    if (!connection) return false;
    xcb_connection_t* c = connection.get();
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(c, &xcb_input_id);
    if (!extension || !extension->present) return false;
    // Raw events reach the root window from XInput 2.1 on; 2.2 also delivers them during grabs.
    const Reply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 2), nullptr));
    if (!version || (version->major_version == 2 && version->minor_version < 1)) return false;

    root_ = rootWindow(c, screen);
    RawPressMask mask{};
    mask.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    mask.head.mask_len = 1;
    mask.bits = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
    const Reply<xcb_generic_error_t> error(
        xcb_request_check(c, xcb_input_xi_select_events_checked(c, root_, 1, &mask.head)));
    if (error) return false;

    xinputOpcode_ = extension->major_opcode;
    connection_ = std::move(connection);
    notifier_ = new QSocketNotifier(xcb_get_file_descriptor(connection_.get()), QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &RawClickMonitor::drain);
    return true;
}

void RawClickMonitor::drain() {
    xcb_connection_t* c = connection_.get();
    if (xcb_connection_has_error(c)) {
        notifier_->setEnabled(false);
        return;
    }
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(c)}) {
        if ((event->response_type & 0x7f) != XCB_GE_GENERIC) continue;
        const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event.get());
        if (generic->extension != xinputOpcode_ || generic->event_type != XCB_INPUT_RAW_BUTTON_PRESS) continue;
        const auto* press = reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event.get());
        if (press->detail != leftButton) continue;
        // The pointer now, not the raw event's device position: raw events carry no screen position.
        const Reply<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(c, xcb_query_pointer(c, root_), nullptr));
        if (pointer && pointer->same_screen) emit leftButtonPressed(QPoint(pointer->root_x, pointer->root_y));
    }
}

}  // namespace quellton::x11
