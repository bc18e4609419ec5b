#include "MonitorCapture.h"

#include <algorithm>
#include <utility>

namespace quellton {

namespace {

constexpr const char* threadName = QUELLTON_APP_ID ".spectrum";
constexpr pa_usec_t fragmentUsec = 10'000;
constexpr double fallbackRate = 48000;

[[noreturn]] void fail(pa_context* c) { throw CaptureError{c ? pa_context_errno(c) : 0}; }

}  // namespace

MonitorCapture::MonitorCapture(const Configure& configure, Samples samples)
    : loop_(threadName), samples_(std::move(samples)) {
    if (!loop_.get() || !loop_.start()) throw CaptureError{PA_ERR_INTERNAL};
    try {
        setUp(configure);
    } catch (...) {
        // The destructor does not run for a half-built object: join the thread here, so the
        // members are released while no callback can run.
        loop_.stop();
        throw;
    }
}

void MonitorCapture::setUp(const Configure& configure) {
    pulse::Mainloop::Lock lock(loop_);
    connect();
    sink_ = defaultSink();
    const StreamFormat format = sinkFormat();
    configure(format);
    record(format);
}

MonitorCapture::~MonitorCapture() {
    // Joining the mainloop thread first means no callback runs while the objects go away.
    loop_.stop();
    stream_.reset();
    context_.reset();
}

void MonitorCapture::connect() {
    context_.reset(pa_context_new(loop_.api(), "Quellton"));
    if (!context_) throw CaptureError{PA_ERR_INTERNAL};
    pa_context_set_state_callback(context_.get(), onContextState, this);
    // No autospawn: without a sound server capture stays off instead of starting one.
    if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        fail(context_.get());
    for (;;) {
        const pa_context_state_t state = pa_context_get_state(context_.get());
        if (state == PA_CONTEXT_READY) return;
        if (!PA_CONTEXT_IS_GOOD(state)) fail(context_.get());
        loop_.wait();
    }
}

std::string MonitorCapture::defaultSink() {
    struct Query {
        pulse::Mainloop* loop;
        std::string name;
    } query{&loop_, {}};
    auto done = [](pa_context*, const pa_server_info* info, void* q) {
        auto* query = static_cast<Query*>(q);
        if (info && info->default_sink_name) query->name = info->default_sink_name;
        query->loop->signal();
    };
    if (!pulse::await(loop_, pulse::Operation(
                                 pa_context_get_server_info(context_.get(), done, &query))))
        fail(context_.get());
    if (query.name.empty()) throw CaptureError{0};
    return query.name;
}

StreamFormat MonitorCapture::sinkFormat() {
    struct Query {
        pulse::Mainloop* loop;
        bool found = false;
        pa_sample_spec spec{};
    } query{&loop_};
    auto done = [](pa_context*, const pa_sink_info* info, int eol, void* q) {
        auto* query = static_cast<Query*>(q);
        if (eol == 0 && info) {
            query->found = true;
            query->spec = info->sample_spec;
        } else {
            query->loop->signal();
        }
    };
    if (!pulse::await(loop_, pulse::Operation(pa_context_get_sink_info_by_name(
                                 context_.get(), sink_.c_str(), done, &query))))
        fail(context_.get());
    if (!query.found) throw CaptureError{0};
    StreamFormat format;
    format.sampleRate = query.spec.rate > 0 ? query.spec.rate : fallbackRate;
    format.channels = std::max<int>(query.spec.channels, 1);
    format.interleaved = true;  // the sound server always delivers interleaved frames
    return format;
}

void MonitorCapture::record(const StreamFormat& format) {
    channels_ = format.channels;
    pa_sample_spec spec{PA_SAMPLE_FLOAT32LE, uint32_t(format.sampleRate), uint8_t(channels_)};
    if (!pa_sample_spec_valid(&spec)) throw CaptureError{PA_ERR_INVALID};
    stream_.reset(pa_stream_new(context_.get(), "Quellton", &spec, nullptr));
    if (!stream_) fail(context_.get());
    pa_stream_set_state_callback(stream_.get(), onStreamState, this);
    pa_stream_set_read_callback(stream_.get(), onRead, this);
    // Without an explicit small fragment size the server delivers in bursts of seconds.
    pa_buffer_attr attr;
    attr.maxlength = uint32_t(-1);
    attr.tlength = attr.prebuf = attr.minreq = uint32_t(-1);
    attr.fragsize = uint32_t(pa_usec_to_bytes(fragmentUsec, &spec));
    const std::string monitor = sink_ + ".monitor";
    if (pa_stream_connect_record(stream_.get(), monitor.c_str(), &attr,
                                 pa_stream_flags_t(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE)) < 0)
        fail(context_.get());
    for (;;) {
        const pa_stream_state_t state = pa_stream_get_state(stream_.get());
        if (state == PA_STREAM_READY) return;
        if (!PA_STREAM_IS_GOOD(state)) fail(context_.get());
        loop_.wait();
    }
}

void MonitorCapture::onRead(pa_stream* stream, size_t, void* self) {
    auto* capture = static_cast<MonitorCapture*>(self);
    while (pa_stream_readable_size(stream) > 0) {
        const void* data = nullptr;
        size_t bytes = 0;
        if (pa_stream_peek(stream, &data, &bytes) < 0 || bytes == 0) return;
        // A hole (no data) is dropped without analysis.
        if (data) {
            const SampleBuffer buffer{uint32_t(capture->channels_), uint32_t(bytes),
                                      static_cast<const float*>(data)};
            capture->samples_(std::span(&buffer, 1));
        }
        pa_stream_drop(stream);
    }
}

void MonitorCapture::observe(std::function<void(Event)> onEvent) {
    pulse::Mainloop::Lock lock(loop_);
    onEvent_ = std::move(onEvent);
    if (const auto broken = brokenState()) return report(*broken);
    pa_context_set_subscribe_callback(context_.get(), onServerEvent, this);
    pulse::Operation(pa_context_subscribe(context_.get(), PA_SUBSCRIPTION_MASK_SERVER, nullptr,
                                          nullptr));
    // The default may have changed between the set-up's query and the subscription; the
    // server answers this after the subscription is in place, so no change falls between.
    pulse::Operation(pa_context_get_server_info(context_.get(), onServerInfo, this));
}

void MonitorCapture::removeObserver() {
    pulse::Mainloop::Lock lock(loop_);
    onEvent_ = nullptr;
    if (pa_context_get_state(context_.get()) != PA_CONTEXT_READY) return;
    pa_context_set_subscribe_callback(context_.get(), nullptr, nullptr);
    pulse::Operation(pa_context_subscribe(context_.get(), PA_SUBSCRIPTION_MASK_NULL, nullptr,
                                          nullptr));
}

std::optional<MonitorCapture::Event> MonitorCapture::brokenState() const {
    if (!context_ || pa_context_get_state(context_.get()) != PA_CONTEXT_READY)
        return Event::serverLost;
    if (!stream_ || pa_stream_get_state(stream_.get()) != PA_STREAM_READY)
        return Event::streamLost;
    return std::nullopt;
}

void MonitorCapture::report(Event event) {
    if (!onEvent_) return;
    // One report per capture: the owner replaces this object.
    auto onEvent = std::exchange(onEvent_, nullptr);
    onEvent(event);
}

void MonitorCapture::onContextState(pa_context* c, void* self) {
    auto* capture = static_cast<MonitorCapture*>(self);
    capture->loop_.signal();
    if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(c))) capture->report(Event::serverLost);
}

// A stream ends under a live connection when its source goes away (it may not move).
void MonitorCapture::onStreamState(pa_stream* s, void* self) {
    auto* capture = static_cast<MonitorCapture*>(self);
    capture->loop_.signal();
    if (PA_STREAM_IS_GOOD(pa_stream_get_state(s))) return;
    capture->report(capture->brokenState().value_or(Event::streamLost));
}

// A server change may be a new default sink; ask which one it is now.
void MonitorCapture::onServerEvent(pa_context* c, pa_subscription_event_type_t type, uint32_t,
                                   void* self) {
    if ((type & PA_SUBSCRIPTION_EVENT_FACILITY_MASK) != PA_SUBSCRIPTION_EVENT_SERVER) return;
    pulse::Operation(pa_context_get_server_info(c, onServerInfo, self));
}

void MonitorCapture::onServerInfo(pa_context*, const pa_server_info* info, void* self) {
    auto* capture = static_cast<MonitorCapture*>(self);
    if (!info) return;
    const char* sink = info->default_sink_name ? info->default_sink_name : "";
    if (capture->sink_ != sink) capture->report(Event::defaultSinkChanged);
}

}  // namespace quellton
