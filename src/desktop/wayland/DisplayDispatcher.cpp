#include "DisplayDispatcher.h"

#include <poll.h>

#include <QAbstractEventDispatcher>
#include <QThread>

#include <wayland-client-core.h>

namespace quellton::wayland {

DisplayDispatcher::DisplayDispatcher(wl_display* display, QObject* parent)
    : QObject(parent), display_(display), notifier_(wl_display_get_fd(display), QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, &DisplayDispatcher::readable);
    QAbstractEventDispatcher* loop = QAbstractEventDispatcher::instance(thread());
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &DisplayDispatcher::beforeSleep);
    connect(loop, &QAbstractEventDispatcher::awake, this, &DisplayDispatcher::afterSleep);
    dispatch();
}

DisplayDispatcher::~DisplayDispatcher() {
    if (prepared_) wl_display_cancel_read(display_);
}

void DisplayDispatcher::beforeSleep() {
    if (lost_ || prepared_) return;
    // Claim the next read; events already queued must be dispatched first.
    while (wl_display_prepare_read(display_) != 0) {
        if (wl_display_dispatch_pending(display_) < 0) return dispatch();
    }
    prepared_ = true;
    wl_display_flush(display_);
}

void DisplayDispatcher::afterSleep() {
    if (!prepared_) return;
    prepared_ = false;
    pollfd fd{wl_display_get_fd(display_), POLLIN, 0};
    if (poll(&fd, 1, 0) > 0) {
        wl_display_read_events(display_);
    } else {
        wl_display_cancel_read(display_);
    }
    dispatch();
}

void DisplayDispatcher::readable() {
    if (prepared_) return afterSleep();
    if (wl_display_prepare_read(display_) == 0) wl_display_read_events(display_);
    dispatch();
}

void DisplayDispatcher::dispatch() {
    if (lost_) return;
    wl_display_dispatch_pending(display_);
    wl_display_flush(display_);
    if (wl_display_get_error(display_) != 0) {
        lost_ = true;
        notifier_.setEnabled(false);
        emit connectionLost();
    }
}

}  // namespace quellton::wayland
