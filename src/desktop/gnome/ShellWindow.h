#pragma once

#include <QString>

#include <memory>

#include "DesktopHost.h"
#include "OutputScale.h"
#include "Protocols.h"

namespace quellton {
struct CanvasLink;
class VisualRenderer;
struct RendererEnvironment;
}  // namespace quellton

namespace quellton::gnome {

// The compositor's objects a wallpaper window is made with.
struct ShellGlobals {
    wl_compositor* compositor = nullptr;
    xdg_wm_base* windows = nullptr;
};

// The wallpaper on one monitor under GNOME Shell: an ordinary toplevel that our Shell extension
// hides and shows as the background, drawn by the render thread at the monitor's full resolution.
// Its title names the monitor's logical rectangle, which is how the extension places it.
class ShellWindow : public WallpaperSurface {
public:
    ShellWindow(const ShellGlobals& globals, const wayland::OutputGeometry& monitor,
                const RendererEnvironment& environment);
    ~ShellWindow() override;
    ShellWindow(const ShellWindow&) = delete;
    ShellWindow& operator=(const ShellWindow&) = delete;

    LockedInputs& inputs() override;
    QRect geometry() const override { return monitor_.logical; }
    double devicePixelRatio() const override { return monitor_.mode.scale; }
    long framesDrawn() const override;

    // The title the extension reads: "x,y,width,height" of the monitor in logical pixels.
    static QString titleFor(const QRect& monitor);

private:
    static void configured(void* data, xdg_surface* surface, uint32_t serial);
    void applyGeometry();

    wayland::OutputGeometry monitor_;
    std::shared_ptr<VisualRenderer> renderer_;
    std::shared_ptr<CanvasLink> link_;
    wayland::Proxy<wl_surface> surface_;
    wayland::Proxy<xdg_surface> xdgSurface_;
    wayland::Proxy<xdg_toplevel> toplevel_;
};

}  // namespace quellton::gnome
