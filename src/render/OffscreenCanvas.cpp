#include "OffscreenCanvas.h"

#include "Canvas.h"
#include "FrameReadback.h"
#include "RenderThread.h"
#include "VisualRenderer.h"

namespace quellton {

OffscreenCanvas::OffscreenCanvas(Role role, RendererEnvironment environment)
    : role_(role),
      renderer_(std::make_shared<VisualRenderer>(role, hostTimeNow(), std::move(environment))),
      frames_(std::make_shared<FrameMailbox>()) {
    renderer_->inputs().setHidden(true);
}

OffscreenCanvas::~OffscreenCanvas() {
    frames_->setReceiver({});
    setShown(false);
}

void OffscreenCanvas::setGeometry(const QRectF& global, double devicePixelRatio) {
    global_ = global;
    const QPointF bottomLeft = Canvas::toBottomUp(global.bottomLeft());
    renderer_->inputs().setGeometry({global.width(), global.height()},
                                    {bottomLeft.x(), bottomLeft.y(), global.width(), global.height()}, devicePixelRatio);
}

void OffscreenCanvas::setShown(bool shown) {
    renderer_->inputs().setHidden(!shown);
    setDrawing(shown);
}

void OffscreenCanvas::setDrawing(bool drawing) {
    if (drawing && !link_) {
        link_ = RenderThread::shared().addOffscreen(renderer_, frames_);
    } else if (!drawing && link_) {
        RenderThread::shared().remove(link_);
        framesBefore_ += link_->frames;
        link_.reset();
    }
}

void OffscreenCanvas::click(QPointF local) {
    renderer_->inputs().rippleAtLocal(local.x(), global_.height() - local.y(), hostTimeNow());
}

std::pair<QImage, long> OffscreenCanvas::latestFrame() const { return frames_->latest(); }

void OffscreenCanvas::setFrameReceiver(std::function<void()> onFrame) { frames_->setReceiver(std::move(onFrame)); }

long OffscreenCanvas::framesDrawn() const { return framesBefore_ + (link_ ? link_->frames.load() : 0); }

}  // namespace quellton
