#pragma once

#include <QImage>
#include <QPointer>
#include <QQuickItem>

#include <atomic>
#include <memory>

#include "OffscreenCanvas.h"

namespace quellton {

// The hero's live picture: a preview-role canvas that the render thread draws offscreen and reads
// back, shown as a texture inside the scene so texts and buttons draw over it. It draws only while
// its window is shown and not minimised; a click sends a ripple.
class LivePreviewItem : public QQuickItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(LivePreview)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)

public:
    explicit LivePreviewItem(QQuickItem* parent = nullptr);
    ~LivePreviewItem() override;

    qreal radius() const { return radius_; }
    void setRadius(qreal radius);

signals:
    void radiusChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(QQuickWindow* window);
    void updateDrawing();
    void updateGeometry();

    OffscreenCanvas canvas_;
    QPointer<QQuickWindow> window_;
    std::atomic<bool> updatePending_{false};
    long shownSerial_ = 0;
    qreal radius_ = 0;
};

}  // namespace quellton
