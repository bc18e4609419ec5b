#pragma once

#include <QObject>
#include <QSocketNotifier>

struct wl_display;

namespace quellton::wayland {

// Dispatches a Wayland connection's default queue on the thread of this object's event loop.
// Other threads (Mesa's swaps on the render thread) may read the same socket: while the loop
// sleeps it holds its claim to read, so events for this queue that another thread reads are
// never left undispatched.
class DisplayDispatcher : public QObject {
    Q_OBJECT
public:
    explicit DisplayDispatcher(wl_display* display, QObject* parent = nullptr);
    ~DisplayDispatcher() override;

signals:
    // The compositor went away or ended our connection with a protocol error.
    void connectionLost();

private:
    void beforeSleep();
    void afterSleep();
    void readable();
    void dispatch();

    wl_display* display_;
    QSocketNotifier notifier_;
    bool prepared_ = false;
    bool lost_ = false;
};

}  // namespace quellton::wayland
