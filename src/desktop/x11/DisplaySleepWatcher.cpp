#include "DisplaySleepWatcher.h"

#include <xcb/dpms.h>
#include <xcb/screensaver.h>

namespace quellton::x11 {

DisplaySleepWatcher::DisplaySleepWatcher(std::chrono::milliseconds interval, QObject* parent) : QObject(parent) {
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, &DisplaySleepWatcher::poll);
}

bool DisplaySleepWatcher::start() {
    if (timer_.isActive()) return true;
    int screen = 0;
    Connection connection = openConnection(&screen);
    if (!connection) return false;
    const auto present = [&](xcb_extension_t* id) {
        const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection.get(), id);
        return extension && extension->present;
    };
    dpms_ = present(&xcb_dpms_id);
    screenSaver_ = present(&xcb_screensaver_id);
    if (!dpms_ && !screenSaver_) return false;
    root_ = rootWindow(connection.get(), screen);
    connection_ = std::move(connection);
    poll();
    timer_.start();
    return true;
}

void DisplaySleepWatcher::poll() {
    xcb_connection_t* c = connection_.get();
    if (xcb_connection_has_error(c)) {
        timer_.stop();
        return;
    }
    bool asleep = false;
    if (dpms_) {
        const Reply<xcb_dpms_info_reply_t> info(xcb_dpms_info_reply(c, xcb_dpms_info(c), nullptr));
        asleep = info && info->state && info->power_level != XCB_DPMS_DPMS_MODE_ON;
    }
    if (!asleep && screenSaver_) {
        const Reply<xcb_screensaver_query_info_reply_t> info(
            xcb_screensaver_query_info_reply(c, xcb_screensaver_query_info(c, root_), nullptr));
        asleep = info && info->state == XCB_SCREENSAVER_STATE_ON;
    }
    if (asleep == asleep_) return;
    asleep_ = asleep;
    emit asleepChanged(asleep);
}

}  // namespace quellton::x11
