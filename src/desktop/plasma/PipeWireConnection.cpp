#include "PipeWireConnection.h"

#include <pipewire/pipewire.h>

#include <cerrno>
#include <mutex>

namespace quellton::plasma {

struct PipeWireConnection::CoreListener {
    spa_hook hook{};
    pw_core_events events{};
};

namespace {

void initOnce() {
    static std::once_flag once;
    std::call_once(once, [] { pw_init(nullptr, nullptr); });
}

}  // namespace

std::shared_ptr<PipeWireConnection> PipeWireConnection::connect(std::function<void()> lost) {
    initOnce();
    std::shared_ptr<PipeWireConnection> c(new PipeWireConnection);
    c->lost_ = std::move(lost);
    c->loop_ = pw_thread_loop_new("quellton-pipewire", nullptr);
    if (!c->loop_) return nullptr;
    c->context_ = pw_context_new(pw_thread_loop_get_loop(c->loop_), nullptr, 0);
    if (!c->context_ || pw_thread_loop_start(c->loop_) < 0) return nullptr;

    Lock lock(*c);
    c->core_ = pw_context_connect(c->context_, nullptr, 0);
    if (!c->core_) return nullptr;
    c->listener_ = std::make_unique<CoreListener>();
    c->listener_->events.version = PW_VERSION_CORE_EVENTS;
    // EPIPE on the core itself: the server is gone, and every stream with it.
    c->listener_->events.error = [](void* data, uint32_t id, int, int res, const char*) {
        auto* self = static_cast<PipeWireConnection*>(data);
        if (id == PW_ID_CORE && res == -EPIPE && self->lost_) self->lost_();
    };
    pw_core_add_listener(c->core_, &c->listener_->hook, &c->listener_->events, c.get());
    return c;
}

PipeWireConnection::~PipeWireConnection() {
    if (loop_) pw_thread_loop_stop(loop_);
    if (listener_) spa_hook_remove(&listener_->hook);
    if (core_) pw_core_disconnect(core_);
    if (context_) pw_context_destroy(context_);
    if (loop_) pw_thread_loop_destroy(loop_);
}

PipeWireConnection::Lock::Lock(const PipeWireConnection& connection) : loop_(connection.loop()) {
    pw_thread_loop_lock(loop_);
}

PipeWireConnection::Lock::~Lock() { pw_thread_loop_unlock(loop_); }

}  // namespace quellton::plasma
