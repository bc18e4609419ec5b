#pragma once

#include <string>

#include <sys/types.h>

namespace quellton::testsupport {

// A private X server for one test process; sets DISPLAY while it runs.
class XvfbServer {
public:
    explicit XvfbServer(const std::string& screen = "1024x768x24");
    ~XvfbServer();
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    bool running() const { return pid_ > 0 && !display_.empty(); }
    const std::string& display() const { return display_; }

private:
    pid_t pid_ = -1;
    std::string display_;
};

}  // namespace quellton::testsupport
