#include "SoundTestServer.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <thread>

#include "PipeWireTestServer.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"

extern char** environ;

namespace quellton::test {

bool pollUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return condition();
}

std::string kindName(SoundServerKind kind) {
    return kind == SoundServerKind::pulseAudio ? "PulseAudio" : "PipeWire";
}

void PrintTo(SoundServerKind kind, std::ostream* out) { *out << kindName(kind); }

bool shell(const std::string& command) { return std::system(command.c_str()) == 0; }

pid_t spawn(const std::vector<std::string>& argv) { return spawnWith(argv, {}); }

pid_t spawnWith(const std::vector<std::string>& argv,
                const std::map<std::string, std::optional<std::string>>& environment,
                const std::string& log) {
    std::vector<std::string> variables;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        if (!environment.contains(entry.substr(0, entry.find('=')))) variables.push_back(entry);
    }
    for (const auto& [name, value] : environment)
        if (value) variables.push_back(name + "=" + *value);
    std::vector<char*> envp;
    for (std::string& v : variables) envp.push_back(v.data());
    envp.push_back(nullptr);
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (!log.empty()) {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    }
    pid_t pid = -1;
    const int status = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    return status == 0 ? pid : -1;
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

SoundTestServer::SoundTestServer(SoundServerKind kind)
    : kind_(kind), service_({"sound", kind == SoundServerKind::pulseAudio ? "pulse" : "pipewire"}) {}

SoundTestServer::~SoundTestServer() { stopPlaying(); }

std::string SoundTestServer::logs() const {
    return output("tail -n 20 " + dir() + "/*.log 2>/dev/null");
}

bool SoundTestServer::pactl(const std::string& arguments) const {
    return shell("pactl " + arguments + " >/dev/null 2>&1");
}

std::string SoundTestServer::pactlOutput(const std::string& arguments) const {
    return output("pactl " + arguments + " 2>/dev/null");
}

std::string SoundTestServer::defaultSink() const {
    std::string name = pactlOutput("get-default-sink");
    while (!name.empty() && (name.back() == '\n' || name.back() == ' ')) name.pop_back();
    return name;
}

int SoundTestServer::sourceOutputs() const {
    std::istringstream lines(pactlOutput("list short source-outputs"));
    int count = 0;
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) ++count;
    return count;
}

void SoundTestServer::play(const std::string& file, const std::string& sink) {
    // The default latency delivers in bursts of two seconds.
    players_.push_back(spawnWith({"paplay", "--latency-msec=20", "-d", sink, file}, {}, dir() + "/paplay.log"));
}

void SoundTestServer::stopPlaying() {
    for (pid_t p : players_) terminate(p);
    players_.clear();
}

std::unique_ptr<SoundTestServer> makeSoundTestServer(SoundServerKind kind) {
    if (kind == SoundServerKind::pulseAudio) return std::make_unique<PulseTestServer>();
    return std::make_unique<PipeWireTestServer>();
}

}  // namespace quellton::test
