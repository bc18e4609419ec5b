#include "PipeWireVideoStream.h"

#include <pipewire/pipewire.h>
#include <spa/param/video/format-utils.h>
#include <spa/pod/builder.h>

#include <algorithm>
#include <atomic>

#include "FrameCopy.h"
#include "PipeWireConnection.h"

namespace quellton::plasma {

namespace {

class PipeWireVideoStream final : public VideoStream {
public:
    PipeWireVideoStream(std::shared_ptr<PipeWireConnection> connection, const QString& name, QSize size, int maxFps,
                        Source source);
    ~PipeWireVideoStream() override;

    void frameReady() override;

private:
    static void onStateChanged(void* data, pw_stream_state old, pw_stream_state state, const char* error);
    static void onParamChanged(void* data, uint32_t id, const spa_pod* param);
    static void onProcess(void* data);
    static void onFrameReady(void* data, uint64_t count);
    void fill(spa_buffer& buffer);

    std::shared_ptr<PipeWireConnection> connection_;
    QSize size_;
    Source source_;
    pw_stream* stream_ = nullptr;
    spa_hook listener_{};
    pw_stream_events events_{};
    spa_source* ready_ = nullptr;  // signalled from any thread, handled on PipeWire's
    std::uint32_t node_ = 0;
    std::uint64_t sequence_ = 0;
};

constexpr int bytesPerPixel = 4;

PipeWireVideoStream::PipeWireVideoStream(std::shared_ptr<PipeWireConnection> connection, const QString& name,
                                         QSize size, int maxFps, Source source)
    : connection_(std::move(connection)), size_(size), source_(std::move(source)) {
    events_.version = PW_VERSION_STREAM_EVENTS;
    events_.state_changed = &onStateChanged;
    events_.param_changed = &onParamChanged;
    events_.process = &onProcess;

    PipeWireConnection::Lock lock(*connection_);
    pw_properties* props = pw_properties_new(PW_KEY_MEDIA_CLASS, "Video/Source", PW_KEY_MEDIA_ROLE, "Screen",
                                             PW_KEY_NODE_DESCRIPTION, name.toUtf8().constData(), nullptr);
    stream_ = pw_stream_new(connection_->core(), name.toUtf8().constData(), props);
    if (!stream_) return;
    pw_stream_add_listener(stream_, &listener_, &events_, this);
    ready_ = pw_loop_add_event(pw_thread_loop_get_loop(connection_->loop()), &onFrameReady, this);

    std::uint8_t memory[1024];
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory, sizeof memory);
    const spa_rectangle extent = SPA_RECTANGLE(std::uint32_t(size.width()), std::uint32_t(size.height()));
    // Frames come when drawn: a variable rate, at most the renderer's.
    const spa_fraction variable = SPA_FRACTION(0, 1);
    const spa_fraction maxRate = SPA_FRACTION(std::uint32_t(std::max(maxFps, 1)), 1);
    const spa_fraction minRate = SPA_FRACTION(1, 1);
    const spa_pod* params[1];
    params[0] = static_cast<const spa_pod*>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType, SPA_POD_Id(SPA_MEDIA_TYPE_video),
        SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw), SPA_FORMAT_VIDEO_format,
        SPA_POD_Id(SPA_VIDEO_FORMAT_BGRx), SPA_FORMAT_VIDEO_size, SPA_POD_Rectangle(&extent),
        SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&variable), SPA_FORMAT_VIDEO_maxFramerate,
        SPA_POD_CHOICE_RANGE_Fraction(&maxRate, &minRate, &maxRate)));
    pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                      pw_stream_flags(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS), params, 1);
}

PipeWireVideoStream::~PipeWireVideoStream() {
    PipeWireConnection::Lock lock(*connection_);
    if (ready_) pw_loop_destroy_source(pw_thread_loop_get_loop(connection_->loop()), ready_);
    if (stream_) {
        spa_hook_remove(&listener_);
        pw_stream_destroy(stream_);
    }
}

void PipeWireVideoStream::frameReady() {
    if (ready_) pw_loop_signal_event(pw_thread_loop_get_loop(connection_->loop()), ready_);
}

void PipeWireVideoStream::onFrameReady(void* data, uint64_t) {
    auto* self = static_cast<PipeWireVideoStream*>(data);
    if (self->stream_ && pw_stream_get_state(self->stream_, nullptr) == PW_STREAM_STATE_STREAMING)
        pw_stream_trigger_process(self->stream_);
}

void PipeWireVideoStream::onStateChanged(void* data, pw_stream_state, pw_stream_state state, const char*) {
    auto* self = static_cast<PipeWireVideoStream*>(data);
    const std::uint32_t node = state == PW_STREAM_STATE_ERROR || state == PW_STREAM_STATE_UNCONNECTED
                                   ? 0
                                   : pw_stream_get_node_id(self->stream_);
    if (node != SPA_ID_INVALID && node != self->node_) {
        self->node_ = node;
        if (self->source_.nodeChanged) self->source_.nodeChanged(node);
    }
    State mapped = State::connecting;
    if (state == PW_STREAM_STATE_ERROR) mapped = State::failed;
    else if (state == PW_STREAM_STATE_PAUSED) mapped = State::idle;
    else if (state == PW_STREAM_STATE_STREAMING) mapped = State::streaming;
    if (self->source_.stateChanged) self->source_.stateChanged(mapped);
}

// The consumer agreed on the format: ask for buffers of one whole frame in shared memory.
void PipeWireVideoStream::onParamChanged(void* data, uint32_t id, const spa_pod* param) {
    auto* self = static_cast<PipeWireVideoStream*>(data);
    if (id != SPA_PARAM_Format || !param) return;
    const int stride = self->size_.width() * bytesPerPixel;
    std::uint8_t memory[1024];
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory, sizeof memory);
    const spa_pod* params[2];
    params[0] = static_cast<const spa_pod*>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
        SPA_POD_CHOICE_RANGE_Int(3, 2, 8), SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size,
        SPA_POD_Int(stride * self->size_.height()), SPA_PARAM_BUFFERS_stride, SPA_POD_Int(stride),
        SPA_PARAM_BUFFERS_dataType, SPA_POD_CHOICE_FLAGS_Int((1 << SPA_DATA_MemFd) | (1 << SPA_DATA_MemPtr))));
    params[1] = static_cast<const spa_pod*>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta, SPA_PARAM_META_type, SPA_POD_Id(SPA_META_Header),
        SPA_PARAM_META_size, SPA_POD_Int(sizeof(spa_meta_header))));
    pw_stream_update_params(self->stream_, params, 2);
}

void PipeWireVideoStream::onProcess(void* data) {
    auto* self = static_cast<PipeWireVideoStream*>(data);
    pw_buffer* buffer = pw_stream_dequeue_buffer(self->stream_);
    if (!buffer) return;  // all buffers are with the consumer: this frame is dropped
    self->fill(*buffer->buffer);
    pw_stream_queue_buffer(self->stream_, buffer);
}

void PipeWireVideoStream::fill(spa_buffer& buffer) {
    spa_data& plane = buffer.datas[0];
    if (!plane.data) return;
    const QImage frame = source_.newestFrame ? source_.newestFrame() : QImage();
    const std::size_t written = copyFrame(frame, size_, static_cast<std::uint8_t*>(plane.data), plane.maxsize);
    plane.chunk->offset = 0;
    plane.chunk->stride = size_.width() * bytesPerPixel;
    plane.chunk->size = std::uint32_t(written);
    // A buffer without a picture is marked, so the consumer keeps the one it shows.
    plane.chunk->flags = written == 0 ? SPA_CHUNK_FLAG_CORRUPTED : 0;
    auto* header = static_cast<spa_meta_header*>(
        spa_buffer_find_meta_data(&buffer, SPA_META_Header, sizeof(spa_meta_header)));
    if (header) {
        header->pts = -1;
        header->flags = 0;
        header->seq = sequence_++;
        header->dts_offset = 0;
    }
}

}  // namespace

std::unique_ptr<VideoStream> makePipeWireVideoStream(std::shared_ptr<PipeWireConnection> connection,
                                                     const QString& name, QSize size, int maxFps,
                                                     VideoStream::Source source) {
    if (!connection || size.isEmpty()) return nullptr;
    return std::make_unique<PipeWireVideoStream>(std::move(connection), name, size, maxFps, std::move(source));
}

}  // namespace quellton::plasma
