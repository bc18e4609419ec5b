#include "EventConnection.h"

#include <QSocketNotifier>

namespace quellton::x11 {

EventConnection::EventConnection(QObject* parent) : QObject(parent) {}

EventConnection::~EventConnection() = default;

bool EventConnection::open() {
    if (connection_) return true;
    int screen = 0;
    Connection connection = openConnection(&screen);
    if (!connection) return false;
    root_ = rootWindow(connection.get(), screen);
    screen_ = screen;
    connection_ = std::move(connection);
    return true;
}

void EventConnection::listen(Handler handler) {
    handler_ = std::move(handler);
    if (notifier_ || !connection_) return;
    notifier_ = new QSocketNotifier(xcb_get_file_descriptor(connection_.get()), QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &EventConnection::deliverPending);
}

bool EventConnection::broken() const { return !connection_ || xcb_connection_has_error(connection_.get()); }

void EventConnection::deliverPending() {
    if (broken()) {
        if (notifier_) notifier_->setEnabled(false);
        return;
    }
    // A handler's round trips queue further events; the same loop takes them, not a recursion.
    if (delivering_) return;
    delivering_ = true;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        if (handler_) handler_(*event);
    }
    delivering_ = false;
}

}  // namespace quellton::x11
