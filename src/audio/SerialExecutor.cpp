#include "SerialExecutor.h"

namespace quellton {

SerialExecutor::SerialExecutor() : thread_([this](std::stop_token stop) { run(stop); }) {}

SerialExecutor::~SerialExecutor() {
    thread_.request_stop();
    thread_.join();
}

void SerialExecutor::postAfter(Clock::duration delay, std::function<void()> task) {
    {
        std::lock_guard guard(mutex_);
        tasks_.emplace(Clock::now() + delay, std::move(task));
    }
    wake_.notify_one();
}

void SerialExecutor::run(std::stop_token stop) {
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock lock(mutex_);
            for (;;) {
                if (stop.stop_requested()) return;
                if (tasks_.empty()) {
                    wake_.wait(lock, stop, [this] { return !tasks_.empty(); });
                    continue;
                }
                const auto due = tasks_.begin()->first;
                if (due <= Clock::now()) break;
                // Woken early by a task due sooner, or by the stop request.
                wake_.wait_until(lock, stop, due, [&] { return tasks_.begin()->first < due; });
            }
            task = std::move(tasks_.begin()->second);
            tasks_.erase(tasks_.begin());
        }
        task();
    }
}

}  // namespace quellton
