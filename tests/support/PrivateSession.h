#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace quellton::test {

// A private graphical session for tests: an Xvfb server on a free display and a session bus of
// its own, with HOME and the XDG folders in a temporary folder. The process environment points
// there (DISPLAY, DBUS_SESSION_BUS_ADDRESS, HOME, ...), so the user's session is never touched.
class PrivateSession {
public:
    explicit PrivateSession(const std::string& screen = "1280x720x24");
    ~PrivateSession();
    PrivateSession(const PrivateSession&) = delete;
    PrivateSession& operator=(const PrivateSession&) = delete;

    bool ready() const { return ready_; }
    const std::string& display() const { return display_; }
    const std::string& dir() const { return dir_; }

private:
    bool startX(const std::string& screen);
    bool startBus();

    std::string dir_;
    std::string display_;
    pid_t xvfb_ = -1;
    pid_t bus_ = -1;
    bool ready_ = false;
};

// Runs a command through the shell; its exit status, or -1.
int run(const std::string& command);
// Runs a command and returns what it printed on standard output.
std::string output(const std::string& command);

}  // namespace quellton::test
