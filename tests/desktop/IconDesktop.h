#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <QImage>
#include <QRect>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "PrivateSession.h"
#include "XcbHandles.h"

namespace quellton::test {

// One program of the test, its output appended to a log file; ended with SIGTERM when it goes.
class Program {
public:
    Program() = default;
    Program(const std::vector<std::string>& argv, const std::string& log);
    ~Program();
    Program(Program&& other) noexcept;
    Program& operator=(Program&& other) noexcept;

    bool running();
    // SIGTERM, then waits (SIGKILL after the time is up); true when it ended by itself in time.
    bool stop(int milliseconds = 15000);
    // SIGKILL, as a crash or the system would end it.
    void kill();

private:
    pid_t pid_ = -1;
};

// The display as a person sees it: screenshots and the window manager's lists.
class Screen {
public:
    Screen();
    QImage shot() const;
    std::vector<xcb_window_t> clients() const;
    xcb_window_t active() const;
    std::string name(xcb_window_t window) const;
    // The first client or root child whose class hint has this class name.
    xcb_window_t byClass(const std::string& className) const;

private:
    x11::Connection connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
};

// Share of pixels in `area` where two pictures differ by more than `tolerance` in some channel.
double differing(const QImage& a, const QImage& b, const QRect& area, int tolerance = 12);
// Pixels in `area` where both pictures agree to within `tolerance`.
int agreeing(const QImage& a, const QImage& b, const QRect& area, int tolerance = 3);
// Pixels in `area` of the blue that desktops paint behind a selected icon's label.
int selectionBlue(const QImage& image, const QRect& area);
// Keeps a screenshot under $QUELLTON_SHOTS, when it is set, for people to look at.
void keepShot(const QImage& image, const std::string& name);

}  // namespace quellton::test
