#include "Canvas.h"

#include <QExposeEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPlatformSurfaceEvent>
#include <QScreen>

#include "NativeWindow.h"
#include "RenderThread.h"
#include "VisualRenderer.h"
#include "WindowOverlay.h"

namespace quellton {

namespace {

// The height that flips Qt's y-down global coordinates into the renderers' y-up ones.
double flipHeight() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary ? primary->geometry().top() + primary->geometry().height() : 0.0;
}

}  // namespace

RendererEnvironment canvasEnvironment() {
    RendererEnvironment env = RendererEnvironment::live();
    env.mainDisplayHeight = flipHeight();
    return env;
}

QPointF Canvas::toBottomUp(QPointF global) { return {global.x(), flipHeight() - global.y()}; }

Canvas::Canvas(Role role, RendererEnvironment environment, QWindow* parent)
    : QWindow(parent),
      role_(role),
      renderer_(std::make_shared<VisualRenderer>(role, hostTimeNow(), std::move(environment))),
      overlay_(std::make_shared<WindowOverlay>()) {
    setSurfaceType(QSurface::RasterSurface);  // the default visual, which EGL offers configs for
    connect(this, &QWindow::screenChanged, this, [this] { updateGeometry(); });
}

Canvas::~Canvas() { stopLink(); }

LockedInputs& Canvas::inputs() { return renderer_->inputs(); }

long Canvas::framesDrawn() const { return framesBefore_ + (link_ ? link_->frames.load() : 0); }

void Canvas::updateGeometry() {
    const QRect frame(mapToGlobal(QPoint(0, 0)), size());
    const QPointF bottomLeft = toBottomUp(QPointF(frame.left(), frame.top() + frame.height()));
    const double ratio = devicePixelRatio();
    renderer_->inputs().setGeometry({double(width()), double(height())},
                                    {bottomLeft.x(), bottomLeft.y(), double(width()), double(height())}, ratio);
    if (link_) {
        link_->pixelWidth = std::max(1, int(std::lround(width() * ratio)));
        link_->pixelHeight = std::max(1, int(std::lround(height() * ratio)));
    }
}

void Canvas::startLink() {
    const std::uintptr_t native = nativeWindowHandle(*this);
    if (link_ || !native) return;
    link_ = RenderThread::shared().add(renderer_, native, overlay_);
    // Qt's Wayland platform destroys the wl_surface whenever the window hides, without the
    // platform-surface event: the render thread must let go first.
    if (QObject* platformWindow = waylandPlatformWindow(*this))
        connect(platformWindow, SIGNAL(wlSurfaceDestroyed()), this, SLOT(stopLink()),
                Qt::ConnectionType(Qt::DirectConnection | Qt::UniqueConnection));
    updateGeometry();
}

void Canvas::stopLink() {
    if (!link_) return;
    RenderThread::shared().remove(link_);
    framesBefore_ += link_->frames;
    link_.reset();
}

void Canvas::exposeEvent(QExposeEvent* event) {
    if (isExposed()) startLink();
    if (link_) link_->repaint = true;  // the window lost what it showed; a paused picture must come back
    // A preview nobody can see draws nothing; wallpapers get this from their controller.
    if (role_ == Role::preview) renderer_->inputs().setHidden(!isExposed());
    updateGeometry();
    QWindow::exposeEvent(event);
}

void Canvas::resizeEvent(QResizeEvent* event) {
    updateGeometry();
    QWindow::resizeEvent(event);
}

void Canvas::moveEvent(QMoveEvent* event) {
    updateGeometry();
    QWindow::moveEvent(event);
}

void Canvas::mousePressEvent(QMouseEvent* event) {
    const QPointF local = event->position();
    renderer_->inputs().rippleAtLocal(local.x(), height() - local.y(), hostTimeNow());
    event->accept();
}

bool Canvas::event(QEvent* event) {
    if (event->type() == QEvent::PlatformSurface &&
        static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
        stopLink();  // the surface must go before its window
    return QWindow::event(event);
}

}  // namespace quellton
