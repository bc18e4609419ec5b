#include "SerialExecutor.h"

namespace quellton {

SerialExecutor::SerialExecutor() : thread_([this](std::stop_token stop) { run(stop); }) {}

SerialExecutor::~SerialExecutor() {
    thread_.request_stop();
    thread_.join();
}

void SerialExecutor::post(std::function<void()> task) {
    {
        std::lock_guard guard(mutex_);
        tasks_.push_back(std::move(task));
    }
    wake_.notify_one();
}

void SerialExecutor::run(std::stop_token stop) {
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock lock(mutex_);
            if (!wake_.wait(lock, stop, [this] { return !tasks_.empty(); })) return;
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        task();
    }
}

}  // namespace quellton
