#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>

#include <functional>
#include <memory>

#include "FrameInputs.h"
#include "Canvas.h"

namespace quellton {

class FrameMailbox;
class VisualRenderer;
struct CanvasLink;

// A canvas without a window of its own: the render thread draws it into an offscreen target and reads
// every frame back, for a picture that is part of another scene (the gallery's live preview).
class OffscreenCanvas {
public:
    explicit OffscreenCanvas(Role role, RendererEnvironment environment = canvasEnvironment());
    ~OffscreenCanvas();
    OffscreenCanvas(const OffscreenCanvas&) = delete;
    OffscreenCanvas& operator=(const OffscreenCanvas&) = delete;

    // `global` is the canvas's rectangle in Qt's global coordinates (top left, y down), in points.
    void setGeometry(const QRectF& global, double devicePixelRatio);
    // Only a shown canvas is on the render thread; a hidden one costs nothing.
    void setShown(bool shown);
    // Only the render thread's part of `setShown`: whether it is hidden stays someone else's choice.
    void setDrawing(bool drawing);
    bool shown() const { return link_ != nullptr; }
    // A click in the canvas's own points (top left, y down).
    void click(QPointF local);

    // The newest frame and its number; `onFrame` runs on the render thread after each one.
    std::pair<QImage, long> latestFrame() const;
    void setFrameReceiver(std::function<void()> onFrame);

    VisualRenderer& renderer() { return *renderer_; }
    long framesDrawn() const;

private:
    Role role_;
    std::shared_ptr<VisualRenderer> renderer_;
    std::shared_ptr<FrameMailbox> frames_;
    std::shared_ptr<CanvasLink> link_;
    QRectF global_;
    long framesBefore_ = 0;
};

}  // namespace quellton
