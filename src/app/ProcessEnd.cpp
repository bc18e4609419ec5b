#include "ProcessEnd.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <string_view>

namespace quellton {

namespace {

std::atomic<bool> guarding{false};

void say(std::string_view line) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
}

void endAtOnce() {
    if (!guarding) return;
    say("Quellton: Eine Bibliothek hat das Programm beendet; Quellton endet sofort.\n");
    ::_exit(1);
}

}  // namespace

void ProcessEnd::guardExit() {
    static const bool registered = std::atexit(endAtOnce) == 0;
    guarding = registered;
}

ProcessEnd::~ProcessEnd() {
    guarding = false;
    {
        std::lock_guard guard(lock_);
        done_ = true;
    }
    finished_.notify_all();
    if (watchdog_.joinable()) watchdog_.join();
}

void ProcessEnd::startDeadline(std::chrono::milliseconds limit) {
    if (watchdog_.joinable()) return;
    watchdog_ = std::thread([this, limit] {
        std::unique_lock guard(lock_);
        if (finished_.wait_for(guard, limit, [this] { return done_; })) return;
        say("Quellton: Das Beenden hängt; Quellton endet jetzt.\n");
        ::_exit(0);
    });
}

}  // namespace quellton
