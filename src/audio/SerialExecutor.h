#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace quellton {

// Runs posted tasks one after another on a thread of its own, each at its time (tasks due at
// the same time in the order posted). Tasks still queued when it is destroyed are dropped;
// a running task is finished first.
class SerialExecutor {
public:
    using Clock = std::chrono::steady_clock;

    SerialExecutor();
    ~SerialExecutor();
    SerialExecutor(const SerialExecutor&) = delete;
    SerialExecutor& operator=(const SerialExecutor&) = delete;

    void post(std::function<void()> task) { postAfter(Clock::duration::zero(), std::move(task)); }
    void postAfter(Clock::duration delay, std::function<void()> task);

private:
    void run(std::stop_token stop);

    std::mutex mutex_;
    std::condition_variable_any wake_;
    std::multimap<Clock::time_point, std::function<void()>> tasks_;
    std::jthread thread_;
};

}  // namespace quellton
