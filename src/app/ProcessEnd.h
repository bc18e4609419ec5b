#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace quellton {

// Bounds how the application's process ends. While it lives, exit() called from below us (Qt's
// platform plugin when the display connection breaks) ends the process at once instead of running
// the libraries' static destructors against threads that are still drawing. Once quitting starts,
// the process is gone within the deadline, whatever a thread is stuck in.
class ProcessEnd {
public:
    ProcessEnd();
    // The normal end is reached: exit() runs as usual again.
    ~ProcessEnd();
    ProcessEnd(const ProcessEnd&) = delete;
    ProcessEnd& operator=(const ProcessEnd&) = delete;

    // Quitting started; a second call keeps the first deadline.
    void startDeadline(std::chrono::milliseconds limit);

private:
    std::mutex lock_;
    std::condition_variable finished_;
    bool done_ = false;
    std::thread watchdog_;
};

}  // namespace quellton
