#pragma once

#include <QObject>
#include <QPoint>

#include <memory>

#include "XcbHandles.h"

class QSocketNotifier;

namespace quellton::x11 {

// Every press of the left button anywhere on the display, seen as an XInput2 raw event on the
// root window, so presses that go to other clients count too. Reports where the pointer is
// when the event is handled, in root-window pixels.
class RawClickMonitor : public QObject {
    Q_OBJECT
public:
    explicit RawClickMonitor(QObject* parent = nullptr);
    ~RawClickMonitor() override;

    // Opens its own connection and selects the events; false when the display or XInput 2.2 is missing.
    bool start();
    bool running() const { return notifier_ != nullptr; }

signals:
    void leftButtonPressed(QPoint rootPixel);

private:
    void drain();

    Connection connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::uint8_t xinputOpcode_ = 0;
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace quellton::x11
