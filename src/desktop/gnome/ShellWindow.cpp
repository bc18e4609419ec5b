#include "ShellWindow.h"

#include "Canvas.h"
#include "RenderThread.h"
#include "VisualRenderer.h"

namespace quellton::gnome {

ShellWindow::ShellWindow(const ShellGlobals& globals, const wayland::OutputGeometry& monitor,
                         const RendererEnvironment& environment)
    : monitor_(monitor),
      renderer_(std::make_shared<VisualRenderer>(Role::wallpaper, hostTimeNow(), environment)),
      surface_(wl_compositor_create_surface(globals.compositor)),
      xdgSurface_(xdg_wm_base_get_xdg_surface(globals.windows, surface_.get())),
      toplevel_(xdg_surface_get_toplevel(xdgSurface_.get())) {
    static const xdg_surface_listener surfaceListener{&ShellWindow::configured};
    xdg_surface_add_listener(xdgSurface_.get(), &surfaceListener, this);
    // The size the shell suggests leaves out the top bar; the picture keeps the monitor's, and the
    // window is never closed from outside, only by the program.
    static const xdg_toplevel_listener toplevelListener{
        [](void*, xdg_toplevel*, int32_t, int32_t, wl_array*) {},
        [](void*, xdg_toplevel*) {},
        [](void*, xdg_toplevel*, int32_t, int32_t) {},  // configure_bounds
        [](void*, xdg_toplevel*, wl_array*) {},         // wm_capabilities
    };
    xdg_toplevel_add_listener(toplevel_.get(), &toplevelListener, this);
    xdg_toplevel_set_app_id(toplevel_.get(), QUELLTON_APP_ID);
    xdg_toplevel_set_title(toplevel_.get(), titleFor(monitor.logical).toUtf8().constData());
    // Presses reach the desktop's icons; the extension forwards those that reach the background.
    wayland::Proxy<wl_region> nothing(wl_compositor_create_region(globals.compositor));
    wl_surface_set_input_region(surface_.get(), nothing.get());
    applyGeometry();
    wl_surface_commit(surface_.get());
}

ShellWindow::~ShellWindow() {
    // The render thread lets go of the EGL surface before the wl_surface under it goes.
    if (link_) RenderThread::shared().remove(link_);
    toplevel_.reset();
    xdgSurface_.reset();
    surface_.reset();
}

QString ShellWindow::titleFor(const QRect& monitor) {
    return QStringLiteral("%1,%2,%3,%4").arg(monitor.x()).arg(monitor.y()).arg(monitor.width()).arg(monitor.height());
}

LockedInputs& ShellWindow::inputs() { return renderer_->inputs(); }

long ShellWindow::framesDrawn() const { return link_ ? link_->frames.load() : 0; }

void ShellWindow::configured(void* data, xdg_surface* surface, uint32_t serial) {
    auto* self = static_cast<ShellWindow*>(data);
    // The acknowledgement takes effect with the next frame the render thread presents.
    xdg_surface_ack_configure(surface, serial);
    if (!self->link_) {
        self->link_ = RenderThread::shared().add(self->renderer_, std::uintptr_t(self->surface_.get()));
        self->applyGeometry();
    }
}

void ShellWindow::applyGeometry() {
    const int scale = std::max(1, monitor_.mode.scale);
    wl_surface_set_buffer_scale(surface_.get(), scale);
    const QRect frame = monitor_.logical;
    const QPointF bottomLeft = Canvas::toBottomUp(QPointF(frame.left(), frame.top() + frame.height()));
    renderer_->inputs().setGeometry({double(frame.width()), double(frame.height())},
                                    {bottomLeft.x(), bottomLeft.y(), double(frame.width()), double(frame.height())},
                                    scale);
    if (link_) {
        link_->pixelWidth = frame.width() * scale;
        link_->pixelHeight = frame.height() * scale;
    }
}

}  // namespace quellton::gnome
