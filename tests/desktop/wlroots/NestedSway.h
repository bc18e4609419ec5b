#pragma once

#include <sys/types.h>

#include <QImage>

#include <string>
#include <vector>

namespace quellton::test {

// A private wlroots desktop for tests: sway on the headless back end, and inside it a second sway
// whose outputs are windows of the first, so outputs can be added and taken away (the headless back
// end cannot remove one). Both run as an unprivileged user when the test runs as root (sway
// refuses root), with software rendering, in a temporary folder; clients connect to the inner one.
class NestedSway {
public:
    // `innerBackground`: a line of sway's configuration that gives the inner desktop its picture.
    explicit NestedSway(const std::string& innerBackground = {});
    ~NestedSway();
    NestedSway(const NestedSway&) = delete;
    NestedSway& operator=(const NestedSway&) = delete;

    bool ready() const { return ready_; }
    // The inner compositor's socket, an absolute path that WAYLAND_DISPLAY may hold.
    const std::string& socket() const { return socket_; }
    const std::string& dir() const { return dir_; }

    // A command to the inner sway; true when it succeeded.
    bool command(const std::string& text) const;
    // The inner sway's answer to `swaymsg -t <type>`.
    std::string query(const std::string& type) const;
    // Takes an inner output away the way a monitor is unplugged: its window in the outer sway closes.
    bool unplug(const std::string& output) const;
    // A screenshot of the inner desktop's whole layout.
    QImage grab() const;

    // The prefix that runs a command as the compositor's user, with HOME in the private folder, no
    // display of the test's own, and these variables (as `env` takes them).
    std::string asUser(const std::string& environment) const;
    // Starts a program on the inner compositor as the compositor's user.
    pid_t spawnClient(const std::vector<std::string>& argv) const;

private:
    pid_t startSway(const std::string& runtime, const std::string& config, const std::string& environment,
                    std::string* socket, std::string* ipc);
    std::string swaymsg(const std::string& ipc, const std::string& arguments) const;

    std::string dir_;
    std::string socket_, ipc_, outerSocket_, outerIpc_;
    pid_t outer_ = -1, inner_ = -1;
    bool ready_ = false;
};

}  // namespace quellton::test
