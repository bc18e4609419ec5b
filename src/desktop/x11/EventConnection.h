#pragma once

#include <QObject>

#include <functional>

#include "XcbHandles.h"

class QSocketNotifier;

namespace quellton::x11 {

// A private connection to the display whose events reach a handler on the Qt event loop. Events
// that xcb reads while waiting for a reply stay in its queue without waking the socket; they
// are delivered too, after every handler run and whenever `deliverPending()` is called.
class EventConnection : public QObject {
    Q_OBJECT
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    explicit EventConnection(QObject* parent = nullptr);
    ~EventConnection() override;

    // Opens the connection; false when the display cannot be reached.
    bool open();
    // Starts delivering events to the handler.
    void listen(Handler handler);
    xcb_connection_t* get() const { return connection_.get(); }
    xcb_window_t root() const { return root_; }
    int screenNumber() const { return screen_; }
    bool broken() const;
    // Delivers what waits on the socket or in the queue; call after work that waited for replies.
    void deliverPending();

private:
    Connection connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    int screen_ = 0;
    QSocketNotifier* notifier_ = nullptr;
    Handler handler_;
    bool delivering_ = false;
};

}  // namespace quellton::x11
