#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace quellton {

// Runs posted tasks one after another on a thread of its own. Tasks still queued when it is
// destroyed are dropped; a running task is finished first.
class SerialExecutor {
public:
    SerialExecutor();
    ~SerialExecutor();
    SerialExecutor(const SerialExecutor&) = delete;
    SerialExecutor& operator=(const SerialExecutor&) = delete;

    void post(std::function<void()> task);

private:
    void run(std::stop_token stop);

    std::mutex mutex_;
    std::condition_variable_any wake_;
    std::deque<std::function<void()>> tasks_;
    std::jthread thread_;
};

}  // namespace quellton
