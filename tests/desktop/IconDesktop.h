#pragma once

#include <sys/types.h>

#include <QImage>
#include <QRect>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "PrivateSession.h"

namespace quellton::test {

// One program of the test, its output appended to a log file; ended with SIGTERM when it goes.
class Program {
public:
    Program() = default;
    Program(const std::vector<std::string>& argv, const std::string& log);
    ~Program();
    Program(Program&& other) noexcept;
    Program& operator=(Program&& other) noexcept;

    // SIGTERM, then waits (SIGKILL after the time is up); its exit status when it ended by itself in time.
    std::optional<int> stop(int milliseconds = 15000);
    // SIGKILL, as a crash or the system would end it.
    void kill();

private:
    pid_t pid_ = -1;
};

// Polls the condition until it holds or the time is up, without an event loop; its last value.
bool eventually(const std::function<bool()>& condition, int milliseconds = 20000);

// Share of pixels in `area` where two pictures differ by more than `tolerance` in some channel.
double differing(const QImage& a, const QImage& b, const QRect& area, int tolerance = 12);
// Pixels in `area` where both pictures agree to within `tolerance`.
int agreeing(const QImage& a, const QImage& b, const QRect& area, int tolerance = 3);
// Pixels in `area` of the blue that desktops paint behind a selected icon's label.
int selectionBlue(const QImage& image, const QRect& area);
// Keeps a screenshot under $QUELLTON_SHOTS, when it is set, for people to look at.
void keepShot(const QImage& image, const std::string& name);

}  // namespace quellton::test
