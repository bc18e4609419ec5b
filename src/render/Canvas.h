#pragma once

#include <QWindow>

#include <memory>

#include "FrameInputs.h"
#include "VisualRenderer.h"

namespace quellton {

class VisualRenderer;
class WindowOverlay;
struct CanvasLink;

// The live sources of a renderer that draws for one of this application's windows; no pointer.
RendererEnvironment canvasEnvironment();

// A window whose picture the render thread draws: a wallpaper on one screen or the gallery's preview.
// It keeps its renderer's geometry in step, draws while it is exposed and turns clicks into ripples.
class Canvas : public QWindow {
    Q_OBJECT
public:
    explicit Canvas(Role role, RendererEnvironment environment = canvasEnvironment(), QWindow* parent = nullptr);
    ~Canvas() override;

    VisualRenderer& renderer() { return *renderer_; }
    LockedInputs& inputs();
    Role role() const { return role_; }
    // What is drawn over the picture at the window's resolution (the desktop's icons on a wallpaper).
    const std::shared_ptr<WindowOverlay>& overlay() const { return overlay_; }
    // Frames drawn so far, for diagnostics and tests.
    long framesDrawn() const;

    // Qt's global coordinates (top left, y down) to the renderers' (bottom left of the primary screen, y up).
    static QPointF toBottomUp(QPointF global);

protected:
    void exposeEvent(QExposeEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private slots:
    void stopLink();

private:
    void updateGeometry();
    void startLink();

    Role role_;
    std::shared_ptr<VisualRenderer> renderer_;
    std::shared_ptr<WindowOverlay> overlay_;
    std::shared_ptr<CanvasLink> link_;
    long framesBefore_ = 0;
};

}  // namespace quellton
