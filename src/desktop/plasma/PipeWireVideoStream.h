#pragma once

#include <QSize>
#include <QString>

#include <memory>

#include "VideoStream.h"

namespace quellton::plasma {

class PipeWireConnection;

// A video source node in shared memory, BGRx at one fixed size, driven by our frames: a buffer is
// filled and queued only when a frame is ready, so a still picture costs nothing.
std::unique_ptr<VideoStream> makePipeWireVideoStream(std::shared_ptr<PipeWireConnection> connection,
                                                     const QString& name, QSize size, int maxFps,
                                                     VideoStream::Source source);

}  // namespace quellton::plasma
