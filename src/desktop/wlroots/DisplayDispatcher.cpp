#include "DisplayDispatcher.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QAbstractEventDispatcher>

#include <cerrno>
#include <chrono>

#include <wayland-client-core.h>

namespace quellton::wayland {

DisplayDispatcher::DisplayDispatcher(wl_display* display, QObject* parent)
    : QObject(parent), display_(display), stopFd_(eventfd(0, EFD_CLOEXEC)) {
    // Requests made on this thread leave before it sleeps.
    connect(QAbstractEventDispatcher::instance(thread()), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] { wl_display_flush(display_); });
    dispatch();
    reader_ = std::thread([this] { read(); });
}

DisplayDispatcher::~DisplayDispatcher() {
    stopping_ = true;
    const uint64_t one = 1;
    if (write(stopFd_, &one, sizeof one) < 0) {}  // the reader also checks `stopping_` within its wait
    dispatched_.notify_all();
    reader_.join();
    close(stopFd_);
}

void DisplayDispatcher::read() {
    pthread_setname_np(pthread_self(), "wl-wallpaper");
    const pollfd wanted[2] = {{wl_display_get_fd(display_), POLLIN, 0}, {stopFd_, POLLIN, 0}};
    while (!stopping_) {
        // Our queue has events: the main thread dispatches them before anyone may read more.
        if (wl_display_prepare_read(display_) != 0) {
            std::unique_lock guard(lock_);
            const long seen = dispatches_;
            guard.unlock();
            requestDispatch();
            guard.lock();
            dispatched_.wait_for(guard, std::chrono::milliseconds(200),
                                 [&] { return stopping_ || dispatches_ != seen; });
            continue;
        }
        wl_display_flush(display_);
        pollfd fds[2] = {wanted[0], wanted[1]};
        const int ready = poll(fds, 2, -1);
        if (ready < 0 && errno == EINTR) {
            wl_display_cancel_read(display_);
            continue;
        }
        if (ready < 0 || fds[1].revents) {
            wl_display_cancel_read(display_);
            break;
        }
        const bool failed = wl_display_read_events(display_) < 0;
        requestDispatch();
        if (failed) break;  // the main thread finds the error when it dispatches
    }
}

void DisplayDispatcher::requestDispatch() {
    if (queued_.exchange(true)) return;
    QMetaObject::invokeMethod(this, [this] { dispatch(); }, Qt::QueuedConnection);
}

void DisplayDispatcher::dispatch() {
    queued_ = false;
    if (lost_) return;
    wl_display_dispatch_pending(display_);
    wl_display_flush(display_);
    {
        std::lock_guard guard(lock_);
        ++dispatches_;
    }
    dispatched_.notify_all();
    if (wl_display_get_error(display_) != 0) {
        lost_ = true;
        emit connectionLost();
    }
}

}  // namespace quellton::wayland
