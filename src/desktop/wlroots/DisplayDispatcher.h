#pragma once

#include <QObject>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

struct wl_display;

namespace quellton::wayland {

// Dispatches a Wayland connection's default queue on the thread that made this object. A reader
// thread of its own waits on the socket and reads, as every thread of the connection must take
// part in reading: Mesa reads the same socket on the render thread, and events for our queue that
// it reads are dispatched here as well. The main thread never waits for the socket, so it may
// wait for the render thread at any time.
class DisplayDispatcher : public QObject {
    Q_OBJECT
public:
    explicit DisplayDispatcher(wl_display* display, QObject* parent = nullptr);
    ~DisplayDispatcher() override;

signals:
    // The compositor went away or ended our connection with a protocol error.
    void connectionLost();

private:
    void read();
    void requestDispatch();
    void dispatch();

    wl_display* display_;
    int stopFd_ = -1;
    std::mutex lock_;
    std::condition_variable dispatched_;
    long dispatches_ = 0;
    std::atomic<bool> queued_{false};
    std::atomic<bool> stopping_{false};
    bool lost_ = false;
    std::thread reader_;
};

}  // namespace quellton::wayland
