#pragma once

#include <functional>
#include <memory>

struct pw_thread_loop;
struct pw_context;
struct pw_core;

namespace quellton::plasma {

// The program's connection to PipeWire: a thread loop of its own, its context and core. Shared by
// every stream; `lost` runs on PipeWire's thread when the server goes away.
class PipeWireConnection {
public:
    // Null when no PipeWire server answers.
    static std::shared_ptr<PipeWireConnection> connect(std::function<void()> lost);
    ~PipeWireConnection();
    PipeWireConnection(const PipeWireConnection&) = delete;
    PipeWireConnection& operator=(const PipeWireConnection&) = delete;

    pw_thread_loop* loop() const { return loop_; }
    pw_core* core() const { return core_; }

    // Holds the loop's lock for a scope: every call into PipeWire from outside its thread needs it.
    class Lock {
    public:
        explicit Lock(const PipeWireConnection& connection);
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        pw_thread_loop* loop_;
    };

private:
    PipeWireConnection() = default;
    struct CoreListener;

    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
    pw_core* core_ = nullptr;
    std::unique_ptr<CoreListener> listener_;
    std::function<void()> lost_;
};

}  // namespace quellton::plasma
