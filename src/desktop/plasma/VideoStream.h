#pragma once

#include <QImage>
#include <QSize>

#include <cstdint>
#include <functional>
#include <memory>

namespace quellton::plasma {

// One screen's picture as a video stream that another process shows. The stream takes the newest
// frame from `Source::newestFrame` when a frame is ready and its consumer wants one.
class VideoStream {
public:
    enum class State { connecting, idle, streaming, failed };
    struct Source {
        std::function<QImage()> newestFrame;
        // Where the stream can be found (0 when it is gone), and whether anyone watches it. Both
        // come on the stream's own thread; the receiver moves them where it needs them.
        std::function<void(std::uint32_t nodeId)> nodeChanged;
        std::function<void(State state)> stateChanged;
    };

    virtual ~VideoStream() = default;
    // Any thread, cheap: a new frame is ready.
    virtual void frameReady() = 0;
};

}  // namespace quellton::plasma
