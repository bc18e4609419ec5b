#include "PulseTestServer.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

extern char** environ;

namespace quellton::test {

bool shell(const std::string& command) { return std::system(command.c_str()) == 0; }

pid_t spawn(const std::vector<std::string>& argv) {
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    pid_t pid = -1;
    if (posix_spawnp(&pid, args[0], nullptr, nullptr, args.data(), environ) != 0) return -1;
    return pid;
}

void terminate(pid_t pid) {
    if (pid <= 0) return;
    ::kill(pid, SIGTERM);
    // A process that hangs on SIGTERM must not hang the test with it.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (waitpid(pid, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

PulseTestServer::PulseTestServer() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quellton-pulse-XXXXXX").string();
    if (!mkdtemp(pattern.data())) return;
    dir_ = pattern;
    std::filesystem::create_directories(dir_ + "/home");
    std::filesystem::create_directories(dir_ + "/runtime");
    setenv("HOME", (dir_ + "/home").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (dir_ + "/runtime").c_str(), 1);
    setenv("PULSE_RUNTIME_PATH", (dir_ + "/runtime").c_str(), 1);
    setenv("PULSE_SERVER", ("unix:" + dir_ + "/native").c_str(), 1);
    unsetenv("DISPLAY");
    // -n skips the user's default.pa; as root it only warns, since --system is not given.
    daemon_ = spawn({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
                     "--disable-shm", "--use-pid-file=no", "--system=false", "--log-target=stderr",
                     "--log-level=error", "-L", "module-null-sink sink_name=one",
                     "-L", "module-null-sink sink_name=two",
                     "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + dir_ + "/native"});
    if (daemon_ <= 0) return;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (std::chrono::steady_clock::now() < deadline) {
        if (pactl("info")) {
            ready_ = pactl("set-default-sink one");
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

PulseTestServer::~PulseTestServer() {
    stopPlaying();
    kill();
    if (!dir_.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(dir_, ignored);
    }
}

bool PulseTestServer::pactl(const std::string& arguments) const {
    return shell("pactl " + arguments + " >/dev/null 2>&1");
}

void PulseTestServer::play(const std::string& file, const std::string& sink) {
    // The default latency delivers in bursts of two seconds.
    players_.push_back(spawn({"paplay", "--latency-msec=20", "-d", sink, file}));
}

void PulseTestServer::stopPlaying() {
    for (pid_t p : players_) terminate(p);
    players_.clear();
}

void PulseTestServer::kill() {
    terminate(daemon_);
    daemon_ = -1;
}

}  // namespace quellton::test
