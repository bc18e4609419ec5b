#include "StreamSurface.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaObject>
#include <QPointer>
#include <QSaveFile>
#include <QScreen>
#include <QThreadPool>

#include "OffscreenCanvas.h"
#include "PipeWireVideoStream.h"
#include "VisualRenderer.h"

namespace quellton::plasma {

namespace {

constexpr int firstStillMs = 3000;
constexpr int stillEveryMs = 30000;

QSize pixelSize(const DesktopScreen& screen) {
    const double ratio = screen.qtScreen ? screen.qtScreen->devicePixelRatio() : 1.0;
    return (QSizeF(screen.geometry.size()) * ratio).toSize();
}

}  // namespace

StreamSurface::StreamSurface(const DesktopScreen& screen, std::shared_ptr<PipeWireConnection> connection,
                             QString stillPath, std::function<void(StreamSurface&)> nodeChanged)
    : screen_(screen), stillPath_(std::move(stillPath)), nodeChanged_(std::move(nodeChanged)),
      canvas_(std::make_unique<OffscreenCanvas>(Role::wallpaper)) {
    canvas_->setGeometry(QRectF(screen.geometry), devicePixelRatio());
    stillTimer_.setSingleShot(true);
    connect(&stillTimer_, &QTimer::timeout, this, &StreamSurface::writeStill);
    makeStream(std::move(connection));
}

StreamSurface::~StreamSurface() {
    // The canvas stops telling the stream, then the stream stops asking the canvas.
    canvas_->setFrameReceiver({});
    stream_.reset();
    canvas_.reset();
}

void StreamSurface::makeStream(std::shared_ptr<PipeWireConnection> connection) {
    canvas_->setFrameReceiver({});
    stream_.reset();
    setStreaming(false);
    const QPointer<StreamSurface> self(this);
    VideoStream::Source source;
    OffscreenCanvas* canvas = canvas_.get();
    source.newestFrame = [canvas] { return canvas->latestFrame().first; };
    source.nodeChanged = [self](std::uint32_t node) {
        QMetaObject::invokeMethod(self, [self, node] {
            if (self) self->setNode(node);
        }, Qt::QueuedConnection);
    };
    source.stateChanged = [self](VideoStream::State state) {
        QMetaObject::invokeMethod(self, [self, state] {
            if (self) self->setStreaming(state == VideoStream::State::streaming);
        }, Qt::QueuedConnection);
    };
    const QString name = QStringLiteral("Quellton %1").arg(screen_.name);
    stream_ = makePipeWireVideoStream(std::move(connection), name, pixelSize(screen_), 60, std::move(source));
    if (VideoStream* stream = stream_.get()) canvas_->setFrameReceiver([stream] { stream->frameReady(); });
}

void StreamSurface::reconnect(std::shared_ptr<PipeWireConnection> connection) {
    setNode(0);
    makeStream(std::move(connection));
}

void StreamSurface::setNode(std::uint32_t node) {
    if (node == node_) return;
    node_ = node;
    if (nodeChanged_) nodeChanged_(*this);
}

// Nothing is drawn while nobody watches: the canvas leaves the render thread.
void StreamSurface::setStreaming(bool streaming) {
    if (streaming == streaming_) return;
    streaming_ = streaming;
    canvas_->setDrawing(streaming);
    if (streaming)
        stillTimer_.start(firstStillMs);
    else
        stillTimer_.stop();
}

// Written beside and then renamed over the old one, off the main thread, so the wallpaper never
// reads half a file.
void StreamSurface::writeStill() {
    if (!streaming_) return;
    stillTimer_.start(stillEveryMs);
    const auto [frame, serial] = canvas_->latestFrame();
    if (serial == 0 || frame.isNull() || inputs().copy().hidden) return;
    QThreadPool::globalInstance()->start([frame = frame, path = stillPath_] {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly) && frame.save(&file, "JPEG", 92)) file.commit();
    });
}

LockedInputs& StreamSurface::inputs() { return canvas_->renderer().inputs(); }

double StreamSurface::devicePixelRatio() const {
    return screen_.qtScreen ? screen_.qtScreen->devicePixelRatio() : 1.0;
}

long StreamSurface::framesDrawn() const { return canvas_->framesDrawn(); }

}  // namespace quellton::plasma
