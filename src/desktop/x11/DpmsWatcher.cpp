#include "DpmsWatcher.h"

#include <xcb/dpms.h>

namespace quellton::x11 {

DpmsWatcher::DpmsWatcher(std::chrono::milliseconds interval, QObject* parent) : QObject(parent) {
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, &DpmsWatcher::poll);
}

bool DpmsWatcher::start() {
    if (timer_.isActive()) return true;
    Connection connection = openConnection();
    if (!connection) return false;
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection.get(), &xcb_dpms_id);
    if (!extension || !extension->present) return false;
    connection_ = std::move(connection);
    poll();
    timer_.start();
    return true;
}

void DpmsWatcher::poll() {
    xcb_connection_t* c = connection_.get();
    const Reply<xcb_dpms_info_reply_t> info(xcb_dpms_info_reply(c, xcb_dpms_info(c), nullptr));
    if (!info) {
        if (xcb_connection_has_error(c)) timer_.stop();
        return;
    }
    const bool asleep = info->state && info->power_level != XCB_DPMS_DPMS_MODE_ON;
    if (asleep == asleep_) return;
    asleep_ = asleep;
    emit asleepChanged(asleep);
}

}  // namespace quellton::x11
