#pragma once

#include <pulse/pulseaudio.h>

#include <memory>

// RAII for the libpulse objects and the threaded-mainloop plumbing, wrapped once so the
// capture logic above it stays readable.
namespace quellton::pulse {

class Mainloop {
public:
    explicit Mainloop(const char* threadName);
    ~Mainloop();
    Mainloop(const Mainloop&) = delete;
    Mainloop& operator=(const Mainloop&) = delete;

    pa_threaded_mainloop* get() const { return loop_.get(); }
    pa_mainloop_api* api() const { return pa_threaded_mainloop_get_api(get()); }
    bool start();
    // Joins the mainloop thread; after it, objects of this loop may be used without the lock.
    void stop();
    // With the lock held: sleep until a callback signals.
    void wait() { pa_threaded_mainloop_wait(get()); }
    void signal() { pa_threaded_mainloop_signal(get(), 0); }

    class Lock {
    public:
        explicit Lock(Mainloop& m) : loop_(m.get()) { pa_threaded_mainloop_lock(loop_); }
        ~Lock() { pa_threaded_mainloop_unlock(loop_); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        pa_threaded_mainloop* loop_;
    };

private:
    struct Free {
        void operator()(pa_threaded_mainloop* m) const { pa_threaded_mainloop_free(m); }
    };
    std::unique_ptr<pa_threaded_mainloop, Free> loop_;
};

struct ContextRelease {
    void operator()(pa_context* c) const {
        pa_context_set_state_callback(c, nullptr, nullptr);
        pa_context_set_subscribe_callback(c, nullptr, nullptr);
        pa_context_disconnect(c);
        pa_context_unref(c);
    }
};
struct StreamRelease {
    void operator()(pa_stream* s) const {
        pa_stream_set_state_callback(s, nullptr, nullptr);
        pa_stream_set_read_callback(s, nullptr, nullptr);
        pa_stream_disconnect(s);
        pa_stream_unref(s);
    }
};
struct OperationRelease {
    void operator()(pa_operation* o) const { pa_operation_unref(o); }
};

using Context = std::unique_ptr<pa_context, ContextRelease>;
using Stream = std::unique_ptr<pa_stream, StreamRelease>;
using Operation = std::unique_ptr<pa_operation, OperationRelease>;

// With the lock held: waits until the operation is done or cancelled (a dying context
// cancels its operations and its state callback signals). Returns whether it completed.
bool await(Mainloop& loop, Operation op);

}  // namespace quellton::pulse
