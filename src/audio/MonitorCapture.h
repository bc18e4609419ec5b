#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "CaptureError.h"
#include "PulseWrapper.h"
#include "SpectrumAnalyzer.h"

namespace quellton {

// Records the output mix: a float32 stream on the monitor source of the default sink, with
// its own mainloop thread (the spectrum queue). Construction is the set-up and throws
// CaptureError; destruction is the tear-down, safe after a partial set-up, ignoring statuses.
class MonitorCapture {
public:
    using Configure = std::function<void(const StreamFormat&)>;
    using Samples = std::function<void(std::span<const SampleBuffer>)>;

    // configure runs before any samples arrive; samples runs on the mainloop thread.
    MonitorCapture(const Configure& configure, Samples samples);
    ~MonitorCapture();
    MonitorCapture(const MonitorCapture&) = delete;
    MonitorCapture& operator=(const MonitorCapture&) = delete;

    const std::string& sinkName() const { return sink_; }

    enum class Event {
        defaultSinkChanged,  // the default sink is no longer the one recorded here
        streamLost,          // the recorded source went away under a live connection
        serverLost,          // the connection to the sound server failed
    };
    // onEvent runs on the mainloop thread (or at once, when the capture is already broken),
    // at most once: whatever happens first ends this capture.
    void observe(std::function<void(Event)> onEvent);
    void removeObserver();

private:
    void setUp(const Configure& configure);
    void connect();
    std::string defaultSink();
    StreamFormat sinkFormat();
    void record(const StreamFormat& format);

    // With the mainloop lock held.
    void report(Event event);
    std::optional<Event> brokenState() const;

    static void onRead(pa_stream* stream, size_t bytes, void* self);
    static void onContextState(pa_context* c, void* self);
    static void onStreamState(pa_stream* s, void* self);
    static void onServerEvent(pa_context* c, pa_subscription_event_type_t type, uint32_t,
                              void* self);
    static void onServerInfo(pa_context*, const pa_server_info* info, void* self);

    pulse::Mainloop loop_;
    pulse::Context context_;
    pulse::Stream stream_;
    std::string sink_;
    int channels_ = 1;
    Samples samples_;
    std::function<void(Event)> onEvent_;  // guarded by the mainloop lock
};

}  // namespace quellton
