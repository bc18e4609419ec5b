#include "LayerSurface.h"

#include "Canvas.h"
#include "RenderThread.h"
#include "VisualRenderer.h"

namespace quellton::wayland {

namespace {

constexpr char layerNamespace[] = "quellton";
constexpr uint32_t allEdges = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                              ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

}  // namespace

LayerSurface::LayerSurface(const LayerGlobals& globals, wl_output* output, const OutputGeometry& geometry,
                           const RendererEnvironment& environment)
    : output_(geometry),
      size_(geometry.logical.size()),
      renderer_(std::make_shared<VisualRenderer>(Role::wallpaper, hostTimeNow(), environment)),
      surface_(wl_compositor_create_surface(globals.compositor)) {
    if (globals.viewporter) viewport_.reset(wp_viewporter_get_viewport(globals.viewporter, surface_.get()));
    layer_.reset(zwlr_layer_shell_v1_get_layer_surface(globals.layerShell, surface_.get(), output,
                                                       ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND, layerNamespace));
    static const zwlr_layer_surface_v1_listener listener{&LayerSurface::configured, &LayerSurface::closed};
    zwlr_layer_surface_v1_add_listener(layer_.get(), &listener, this);
    // Over the whole output, panels included, and never in the keyboard's way.
    zwlr_layer_surface_v1_set_size(layer_.get(), 0, 0);
    zwlr_layer_surface_v1_set_anchor(layer_.get(), allEdges);
    zwlr_layer_surface_v1_set_exclusive_zone(layer_.get(), -1);
    zwlr_layer_surface_v1_set_keyboard_interactivity(layer_.get(), ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    applyGeometry();
    // The first commit carries no buffer; the compositor answers with the size.
    wl_surface_commit(surface_.get());
}

LayerSurface::~LayerSurface() {
    if (onDestroyed) onDestroyed();
    // The render thread lets go of the EGL surface before the wl_surface under it goes.
    if (link_) RenderThread::shared().remove(link_);
    layer_.reset();
    viewport_.reset();
    surface_.reset();
}

LockedInputs& LayerSurface::inputs() { return renderer_->inputs(); }

double LayerSurface::devicePixelRatio() const {
    return size_.width() > 0 ? double(layout_.pixels.width()) / size_.width() : 1.0;
}

long LayerSurface::framesDrawn() const { return link_ ? link_->frames.load() : 0; }

void LayerSurface::setOutput(const OutputGeometry& geometry) {
    if (geometry == output_) return;
    output_ = geometry;
    applyGeometry();
}

void LayerSurface::configured(void* data, zwlr_layer_surface_v1* layer, uint32_t serial, uint32_t width,
                              uint32_t height) {
    auto* self = static_cast<LayerSurface*>(data);
    zwlr_layer_surface_v1_ack_configure(layer, serial);
    // The acknowledgement takes effect with the next frame the render thread presents.
    if (width > 0 && height > 0) self->size_ = QSize(int(width), int(height));
    self->applyGeometry();
    if (!self->link_) {
        self->link_ = RenderThread::shared().add(self->renderer_, std::uintptr_t(self->surface_.get()));
        self->applyGeometry();
    }
}

void LayerSurface::closed(void* data, zwlr_layer_surface_v1*) {
    auto* self = static_cast<LayerSurface*>(data);
    self->closed_ = true;
    if (self->onClosed) self->onClosed();
}

void LayerSurface::applyGeometry() {
    layout_ = wayland::bufferLayout(size_, output_.mode, output_.logical.size(), viewport_ != nullptr);
    if (viewport_) {
        const bool scaled = layout_.viewport;
        wp_viewport_set_destination(viewport_.get(), scaled ? size_.width() : -1, scaled ? size_.height() : -1);
    }
    if (wl_proxy_get_version(reinterpret_cast<wl_proxy*>(surface_.get())) >= WL_SURFACE_SET_BUFFER_SCALE_SINCE_VERSION)
        wl_surface_set_buffer_scale(surface_.get(), layout_.bufferScale);

    const QRect frame(output_.logical.topLeft(), size_);
    const QPointF bottomLeft = Canvas::toBottomUp(QPointF(frame.left(), frame.top() + frame.height()));
    renderer_->inputs().setGeometry({double(size_.width()), double(size_.height())},
                                    {bottomLeft.x(), bottomLeft.y(), double(size_.width()), double(size_.height())},
                                    devicePixelRatio());
    if (link_) {
        link_->pixelWidth = layout_.pixels.width();
        link_->pixelHeight = layout_.pixels.height();
    }
}

}  // namespace quellton::wayland
