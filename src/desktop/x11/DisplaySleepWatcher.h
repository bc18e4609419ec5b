#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

#include "XcbHandles.h"

namespace quellton::x11 {

// Whether the displays sleep: DPMS has turned them off or the X screen saver blanks them. The X
// server sends no event for a DPMS change, so both are read at a fixed interval.
class DisplaySleepWatcher : public QObject {
    Q_OBJECT
public:
    explicit DisplaySleepWatcher(std::chrono::milliseconds interval = std::chrono::seconds(2), QObject* parent = nullptr);

    // False when the display has neither DPMS nor the screen-saver extension.
    bool start();
    bool asleep() const { return asleep_; }

signals:
    void asleepChanged(bool asleep);

private:
    void poll();

    Connection connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    bool dpms_ = false;
    bool screenSaver_ = false;
    QTimer timer_;
    bool asleep_ = false;
};

}  // namespace quellton::x11
