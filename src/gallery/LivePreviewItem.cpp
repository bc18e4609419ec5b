#include "LivePreviewItem.h"

#include "WindowEnvironment.h"

#include <QQuickWindow>
#include <QSGGeometryNode>
#include <QSGTexture>

#include "RoundedTextureMaterial.h"

namespace quellton {

namespace {

// The scene-graph node: a rectangle with the newest frame as its texture, which it owns.
class PreviewNode : public QSGGeometryNode {
public:
    PreviewNode() : geometry_(QSGGeometry::defaultAttributes_TexturedPoint2D(), 4) {
        setGeometry(&geometry_);
        setMaterial(&material_);
    }
    void setTexture(QSGTexture* texture) {
        texture_.reset(texture);
        material_.texture = texture;
        markDirty(DirtyMaterial);
    }
    bool hasTexture() const { return texture_ != nullptr; }
    void setShape(const QRectF& rect, qreal radius) {
        QSGGeometry::updateTexturedRectGeometry(&geometry_, rect, QRectF(0, 0, 1, 1));
        material_.size = rect.size();
        material_.radius = float(radius);
        markDirty(DirtyGeometry | DirtyMaterial);
    }

private:
    QSGGeometry geometry_;
    RoundedTextureMaterial material_;
    std::unique_ptr<QSGTexture> texture_;
};

}  // namespace

LivePreviewItem::LivePreviewItem(QQuickItem* parent) : QQuickItem(parent), canvas_(Role::preview, windowEnvironment()) {
    setFlag(ItemHasContents);
    setAcceptedMouseButtons(Qt::LeftButton);
    // One queued repaint at a time, however fast the render thread delivers.
    canvas_.setFrameReceiver([this] {
        if (!updatePending_.exchange(true))
            QMetaObject::invokeMethod(this, [this] {
                updatePending_ = false;
                update();
            }, Qt::QueuedConnection);
    });
}

LivePreviewItem::~LivePreviewItem() { canvas_.setFrameReceiver({}); }

void LivePreviewItem::setRadius(qreal radius) {
    if (radius == radius_) return;
    radius_ = radius;
    emit radiusChanged();
    update();
}

QSGNode* LivePreviewItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<PreviewNode*>(old);
    if (width() <= 0 || height() <= 0) {
        delete node;
        return nullptr;
    }
    if (!node) node = new PreviewNode;
    updateGeometry();  // the item moves with its ancestors too (a dragged split handle), which tells it nothing
    const auto [frame, serial] = canvas_.latestFrame();
    if (serial != shownSerial_ && !frame.isNull()) {
        node->setTexture(window()->createTextureFromImage(frame));
        shownSerial_ = serial;
    } else if (!node->hasTexture()) {
        QImage black(1, 1, QImage::Format_RGB32);
        black.fill(Qt::black);
        node->setTexture(window()->createTextureFromImage(black));
    }
    node->setShape(boundingRect(), radius_);
    return node;
}

void LivePreviewItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    updateGeometry();
    updateDrawing();
    update();
}

void LivePreviewItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange) watch(data.window);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) updateDrawing();
}

void LivePreviewItem::watch(QQuickWindow* window) {
    if (window_) {
        window_->removeEventFilter(this);
        disconnect(window_, nullptr, this, nullptr);
    }
    window_ = window;
    if (!window) return;
    window->installEventFilter(this);
    connect(window, &QWindow::visibilityChanged, this, &LivePreviewItem::updateDrawing);
    connect(window, &QWindow::xChanged, this, &LivePreviewItem::updateGeometry);
    connect(window, &QWindow::yChanged, this, &LivePreviewItem::updateGeometry);
    connect(window, &QWindow::screenChanged, this, &LivePreviewItem::updateGeometry);
}

// Exposure has no signal of its own: it arrives as an event of the window.
bool LivePreviewItem::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_ && event->type() == QEvent::Expose)
        QMetaObject::invokeMethod(this, &LivePreviewItem::updateDrawing, Qt::QueuedConnection);
    return QQuickItem::eventFilter(watched, event);
}

void LivePreviewItem::updateDrawing() {
    const bool wanted = window_ && window_->isVisible() && window_->isExposed() &&
                        window_->visibility() != QWindow::Minimized && isVisible() && width() > 0 && height() > 0;
    if (wanted == canvas_.shown()) return;
    if (wanted) updateGeometry();
    canvas_.setShown(wanted);
}

void LivePreviewItem::updateGeometry() {
    if (!window_) return;
    canvas_.setGeometry(QRectF(mapToGlobal(QPointF(0, 0)), size()), window_->effectiveDevicePixelRatio());
}

void LivePreviewItem::mousePressEvent(QMouseEvent* event) {
    canvas_.click(event->position());
    event->accept();
}

}  // namespace quellton
