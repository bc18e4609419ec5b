#pragma once

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>

#include "DesktopHost.h"

namespace quellton {
class OffscreenCanvas;
}

namespace quellton::plasma {

class PipeWireConnection;
class VideoStream;

// One screen's picture as a PipeWire stream: the render thread draws it offscreen, each frame is
// read back and handed to the stream, and only while someone watches the stream is anything drawn.
// Now and then a still of it is written, for the times no stream runs.
class StreamSurface final : public QObject, public WallpaperSurface {
    Q_OBJECT
public:
    // `nodeChanged` runs on the main thread when the stream's node changes (0 when it is gone).
    StreamSurface(const DesktopScreen& screen, std::shared_ptr<PipeWireConnection> connection, QString stillPath,
                  std::function<void(StreamSurface&)> nodeChanged);
    ~StreamSurface() override;

    // PipeWire came back: a new stream on the new connection.
    void reconnect(std::shared_ptr<PipeWireConnection> connection);

    LockedInputs& inputs() override;
    QRect geometry() const override { return screen_.geometry; }
    double devicePixelRatio() const override;
    long framesDrawn() const override;

    const DesktopScreen& screen() const { return screen_; }
    std::uint32_t node() const { return node_; }
    bool streaming() const { return streaming_; }

private:
    void makeStream(std::shared_ptr<PipeWireConnection> connection);
    void setNode(std::uint32_t node);
    void setStreaming(bool streaming);
    void writeStill();

    DesktopScreen screen_;
    QString stillPath_;
    std::function<void(StreamSurface&)> nodeChanged_;
    std::unique_ptr<OffscreenCanvas> canvas_;
    std::unique_ptr<VideoStream> stream_;
    std::uint32_t node_ = 0;
    bool streaming_ = false;
    QTimer stillTimer_;
};

}  // namespace quellton::plasma
