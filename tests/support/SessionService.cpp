#include "SessionService.h"

#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <iostream>

#include "SoundTestServer.h"

extern char** environ;

namespace quellton::test {

namespace {
// Generous: the service keeps its own, shorter limits, this one only guards against a hung one.
constexpr auto answerLimit = std::chrono::seconds(120);
}  // namespace

SessionService::SessionService(const std::vector<std::string>& arguments) {
    // A socket, not pipes: a command to a service that died fails instead of raising SIGPIPE.
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return;
    std::vector<std::string> argv = {QUELLTON_TEST_PYTHON, QUELLTON_TEST_SUPPORT_DIR "/session_service.py"};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<char*> args;
    for (std::string& a : argv) args.push_back(a.data());
    args.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    if (posix_spawn(&pid_, args[0], &actions, nullptr, args.data(), environ) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    socket_ = ends[0];
    std::string line;
    while (pid_ > 0 && readLine(&line)) {
        if (line == "ready") {
            ready_ = true;
            return;
        }
        const std::size_t space = line.find(' ');
        const std::string word = line.substr(0, space), rest = line.substr(space + 1);
        if (word == "set" && rest.find('=') != std::string::npos)
            setenv(rest.substr(0, rest.find('=')).c_str(), rest.substr(rest.find('=') + 1).c_str(), 1);
        else if (word == "unset")
            unsetenv(rest.c_str());
        else if (word == "folder")
            folder_ = rest;
        else
            break;
    }
    std::cerr << "the private service";
    for (const std::string& a : arguments) std::cerr << " " << a;
    std::cerr << " did not start: " << line << std::endl;
}

SessionService::~SessionService() {
    // The end of its input: it stops everything and ends.
    if (socket_ >= 0) close(socket_);
    if (pid_ > 0 && !pollUntil([this] { return waitpid(pid_, nullptr, WNOHANG) != 0; }, std::chrono::seconds(30)))
        terminate(pid_);
}

bool SessionService::request(const std::string& command) {
    const std::string line = command + "\n";
    if (socket_ < 0 || send(socket_, line.data(), line.size(), MSG_NOSIGNAL) != ssize_t(line.size())) return false;
    std::string answer;
    return readLine(&answer) && answer == "ok";
}

bool SessionService::readLine(std::string* line) {
    using namespace std::chrono;
    const auto deadline = steady_clock::now() + answerLimit;
    while (pending_.find('\n') == std::string::npos) {
        const auto left = duration_cast<milliseconds>(deadline - steady_clock::now());
        pollfd readable{socket_, POLLIN, 0};
        if (left.count() <= 0) return false;
        const int events = poll(&readable, 1, int(left.count()));
        if (events < 0 && errno == EINTR) continue;
        if (events <= 0) return false;
        char buffer[4096];
        const ssize_t n = read(socket_, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        pending_.append(buffer, std::size_t(n));
    }
    *line = pending_.substr(0, pending_.find('\n'));
    pending_.erase(0, line->size() + 1);
    return true;
}

}  // namespace quellton::test
