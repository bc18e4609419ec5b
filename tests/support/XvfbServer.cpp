#include "XvfbServer.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace quellton::testsupport {

XvfbServer::XvfbServer(const std::string& screen) {
    int fds[2];
    if (pipe(fds) != 0) return;
    pid_ = fork();
    if (pid_ == 0) {
        close(fds[0]);
        const std::string fd = std::to_string(fds[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", screen.c_str(), "-nolisten", "tcp",
               "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    // Xvfb writes its display number once it accepts connections.
    std::string number;
    pollfd p{fds[0], POLLIN, 0};
    while (poll(&p, 1, 10000) > 0) {
        char c = 0;
        if (read(fds[0], &c, 1) != 1 || c == '\n') break;
        number += c;
    }
    close(fds[0]);
    if (number.empty()) return;
    display_ = ":" + number;
    setenv("DISPLAY", display_.c_str(), 1);
    unsetenv("WAYLAND_DISPLAY");
}

XvfbServer::~XvfbServer() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
}

}  // namespace quellton::testsupport
