#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

#include "XcbHandles.h"

namespace quellton::x11 {

// Whether the displays sleep, from the DPMS power level. The X server sends no event when the
// level changes, so it is read at a fixed interval.
class DpmsWatcher : public QObject {
    Q_OBJECT
public:
    explicit DpmsWatcher(std::chrono::milliseconds interval = std::chrono::seconds(2), QObject* parent = nullptr);

    // False when the display has no DPMS; then the displays count as awake forever.
    bool start();
    bool asleep() const { return asleep_; }

signals:
    void asleepChanged(bool asleep);

private:
    void poll();

    Connection connection_;
    QTimer timer_;
    bool asleep_ = false;
};

}  // namespace quellton::x11
