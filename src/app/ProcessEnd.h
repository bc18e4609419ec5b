#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace quellton {

// Bounds how the application's process ends. Once guarding, exit() called from below us (Qt's
// platform plugin when the display connection breaks) ends the process at once instead of running
// the libraries' static destructors against threads that are still drawing. Once quitting starts,
// the process is gone within the deadline, whatever a thread is stuck in, the toolkit's own end
// included: so it is made before the application object and outlives it.
class ProcessEnd {
public:
    ProcessEnd() = default;
    // The normal end is reached: exit() runs as usual again.
    ~ProcessEnd();
    ProcessEnd(const ProcessEnd&) = delete;
    ProcessEnd& operator=(const ProcessEnd&) = delete;

    // From now on (call it once the toolkit is set up, so this comes before its own exit handlers).
    void guardExit();
    // Quitting started; a second call keeps the first deadline.
    void startDeadline(std::chrono::milliseconds limit);

private:
    std::mutex lock_;
    std::condition_variable finished_;
    bool done_ = false;
    std::thread watchdog_;
};

}  // namespace quellton
