#pragma once

#include <string>

#include "SessionService.h"

namespace quellton::test {

// A private graphical session for tests: an Xvfb server on a free display and a session bus of
// its own, with HOME and the XDG folders in a temporary folder. The process environment points
// there (DISPLAY, DBUS_SESSION_BUS_ADDRESS, HOME, ...), so the user's session is never touched.
class PrivateSession {
public:
    explicit PrivateSession(const std::string& screen = "1280x720x24");

    bool ready() const { return service_.ready(); }
    const std::string& display() const { return display_; }
    const std::string& dir() const { return service_.folder(); }

private:
    SessionService service_;
    std::string display_;
};

// Runs a command through the shell; its exit status, or -1.
int run(const std::string& command);
// Runs a command and returns what it printed on standard output.
std::string output(const std::string& command);

}  // namespace quellton::test
