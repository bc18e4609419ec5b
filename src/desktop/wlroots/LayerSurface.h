#pragma once

#include <functional>
#include <memory>

#include "DesktopHost.h"
#include "OutputScale.h"
#include "Protocols.h"

namespace quellton {
struct CanvasLink;
class VisualRenderer;
struct RendererEnvironment;
}  // namespace quellton

namespace quellton::wayland {

// The compositor's objects a background surface is made with.
struct LayerGlobals {
    wl_compositor* compositor = nullptr;
    zwlr_layer_shell_v1* layerShell = nullptr;
    wp_viewporter* viewporter = nullptr;  // optional: fractional scales need it
};

// The wallpaper on one output: a background-layer surface over the whole output, drawn by the
// render thread through EGL at the output's full resolution, hidden by its controller.
class LayerSurface : public WallpaperSurface {
public:
    LayerSurface(const LayerGlobals& globals, wl_output* output, const OutputGeometry& geometry,
                 const RendererEnvironment& environment);
    ~LayerSurface() override;
    LayerSurface(const LayerSurface&) = delete;
    LayerSurface& operator=(const LayerSurface&) = delete;

    LockedInputs& inputs() override;
    QRect geometry() const override { return output_.logical; }
    double devicePixelRatio() const override;
    long framesDrawn() const override;

    wl_surface* surface() const { return surface_.get(); }
    // The buffers' size and scale, for diagnostics and tests.
    BufferLayout bufferLayout() const { return layout_; }
    // The output's scale or resolution changed.
    void setOutput(const OutputGeometry& geometry);
    // The compositor no longer shows it.
    bool isClosed() const { return closed_; }
    // Called once when the compositor closes the surface (its output is going away).
    std::function<void()> onClosed;
    // Called from the destructor.
    std::function<void()> onDestroyed;

private:
    static void configured(void* data, zwlr_layer_surface_v1*, uint32_t serial, uint32_t width, uint32_t height);
    static void closed(void* data, zwlr_layer_surface_v1*);
    void applyGeometry();

    OutputGeometry output_;
    QSize size_;  // logical, as configured
    BufferLayout layout_;
    bool closed_ = false;
    std::shared_ptr<VisualRenderer> renderer_;
    std::shared_ptr<CanvasLink> link_;
    Proxy<wl_surface> surface_;
    Proxy<wp_viewport> viewport_;
    Proxy<zwlr_layer_surface_v1> layer_;
};

}  // namespace quellton::wayland
