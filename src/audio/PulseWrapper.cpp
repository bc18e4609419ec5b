#include "PulseWrapper.h"

namespace quellton::pulse {

Mainloop::Mainloop(const char* threadName) : loop_(pa_threaded_mainloop_new()) {
    if (loop_) pa_threaded_mainloop_set_name(get(), threadName);
}

Mainloop::~Mainloop() { stop(); }

bool Mainloop::start() { return loop_ && pa_threaded_mainloop_start(get()) == 0; }

void Mainloop::stop() {
    if (loop_) pa_threaded_mainloop_stop(get());
}

bool await(Mainloop& loop, Operation op) {
    if (!op) return false;
    while (pa_operation_get_state(op.get()) == PA_OPERATION_RUNNING) loop.wait();
    return pa_operation_get_state(op.get()) == PA_OPERATION_DONE;
}

}  // namespace quellton::pulse
