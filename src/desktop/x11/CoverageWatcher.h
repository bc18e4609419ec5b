#pragma once

#include <QObject>
#include <QRect>
#include <QTimer>

#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "Coverage.h"
#include "EventConnection.h"
#include "Ewmh.h"

namespace quellton::x11 {

// Follows the top-level windows (the window manager's client list, or the root's children when
// no EWMH manager runs) and tells which screens a window hides completely.
class CoverageWatcher : public QObject {
    Q_OBJECT
public:
    explicit CoverageWatcher(QObject* parent = nullptr);
    ~CoverageWatcher() override;

    bool start();
    // A screen, in root-window pixels, is hidden behind a window.
    bool covered(const QRect& screen) const;

signals:
    void changed();

private:
    void refresh();
    std::vector<xcb_window_t> clients() const;
    std::optional<ClientWindow> describe(xcb_window_t window, std::optional<std::uint32_t> desktop);
    QRect workArea(std::optional<std::uint32_t> desktop) const;

    EventConnection connection_;
    std::unique_ptr<Atoms> atoms_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    // Bursts of events (a window being dragged) lead to one re-read.
    QTimer refreshTimer_;
    std::set<xcb_window_t> watched_;
    std::vector<ClientWindow> windows_;
    QRect workArea_;
};

}  // namespace quellton::x11
