#include "PrivateSession.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <thread>

extern char** environ;

namespace quellton::test {

namespace {

pid_t spawnWith(const std::vector<std::string>& argv, posix_spawn_file_actions_t* actions) {
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    pid_t pid = -1;
    if (posix_spawnp(&pid, args[0], actions, nullptr, args.data(), environ) != 0) return -1;
    return pid;
}

void stop(pid_t pid) {
    if (pid <= 0) return;
    ::kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
}

}  // namespace

int run(const std::string& command) {
    const int status = std::system(command.c_str());
    return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string output(const std::string& command) {
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    if (!pipe) return {};
    std::string text;
    std::array<char, 4096> buffer{};
    while (const std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) text.append(buffer.data(), n);
    return text;
}

PrivateSession::PrivateSession(const std::string& screen) {
    std::string pattern = (std::filesystem::temp_directory_path() / "quellton-session-XXXXXX").string();
    if (!mkdtemp(pattern.data())) return;
    dir_ = pattern;
    for (const char* sub : {"home", "runtime", "config", "cache", "data", "state"})
        std::filesystem::create_directories(dir_ + "/" + sub);
    std::filesystem::permissions(dir_ + "/runtime", std::filesystem::perms::owner_all);
    setenv("HOME", (dir_ + "/home").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (dir_ + "/runtime").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (dir_ + "/config").c_str(), 1);
    setenv("XDG_CACHE_HOME", (dir_ + "/cache").c_str(), 1);
    setenv("XDG_DATA_HOME", (dir_ + "/data").c_str(), 1);
    setenv("XDG_STATE_HOME", (dir_ + "/state").c_str(), 1);
    unsetenv("WAYLAND_DISPLAY");
    // GSettings in a key file under the private config folder: dconf would hold the bus, and GIO
    // ends a process whose bus goes away (the session's own end at the test's end).
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    ready_ = startX(screen) && startBus();
}

PrivateSession::~PrivateSession() {
    stop(bus_);
    stop(xvfb_);
    if (!dir_.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(dir_, ignored);
    }
}

bool PrivateSession::startX(const std::string& screen) {
    // Xvfb picks a free display itself and writes its number to the pipe.
    int fds[2];
    if (pipe(fds) != 0) return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addclose(&actions, fds[0]);
    xvfb_ = spawnWith({"Xvfb", "-displayfd", std::to_string(fds[1]), "-screen", "0", screen, "-nolisten", "tcp",
                       "-noreset", "+extension", "GLX"},
                      &actions);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    std::string number;
    pollfd readable{fds[0], POLLIN, 0};
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (xvfb_ > 0 && std::chrono::steady_clock::now() < deadline && number.find('\n') == std::string::npos) {
        if (poll(&readable, 1, 200) <= 0) continue;
        char buffer[16];
        const ssize_t n = read(fds[0], buffer, sizeof buffer);
        if (n <= 0) break;
        number.append(buffer, std::size_t(n));
    }
    close(fds[0]);
    if (number.find('\n') == std::string::npos) return false;
    display_ = ":" + number.substr(0, number.find('\n'));
    setenv("DISPLAY", display_.c_str(), 1);
    return true;
}

bool PrivateSession::startBus() {
    const std::string socket = dir_ + "/runtime/bus";
    bus_ = spawnWith({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=unix:path=" + socket},
                     nullptr);
    if (bus_ <= 0) return false;
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + socket).c_str(), 1);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < deadline) {
        if (std::filesystem::exists(socket)) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

}  // namespace quellton::test
