#pragma once

#include <atomic>
#include <memory>

namespace quellton {

// The one lifetime of a process-wide instance (the `shared()` objects): made on first use, or
// earlier in the order the application writes down, then stopped by the application but never
// destroyed. So no destructor of ours runs at exit(), whichever thread calls it: a library that
// ends the process from its own thread (Xlib, Qt's platform plugins) cannot make us wait for a
// thread that is itself stuck in exit().
template <class T>
class ProcessWide {
public:
    // The instance, made by `make` (returning a std::unique_ptr<T>) on the first call.
    template <class Make>
    static T& instance(Make make) {
        static T* const object = [&] {
            std::unique_ptr<T> made = make();
            made_ = true;
            return made.release();
        }();
        return *object;
    }
    // Whether it was made: what was never made needs no stopping.
    static bool made() { return made_; }

private:
    static inline std::atomic<bool> made_{false};
};

}  // namespace quellton
