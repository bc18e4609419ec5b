#pragma once

#include <QPointF>
#include <QTimer>

#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "DesktopHost.h"
#include "OutputScale.h"
#include "Protocols.h"

namespace quellton {
class SessionIdle;
class SettingsStore;
}

namespace quellton::wayland {

class DisplayDispatcher;
class LayerSurface;
class SeatPointers;
class Toplevels;
class WallpaperClients;

// The pointer over the desktop in Qt's global coordinates, shared with the render thread.
struct PointerOverDesktop {
    std::optional<std::array<double, 2>> read() const;
    void write(std::optional<std::array<double, 2>> position);

private:
    mutable std::mutex lock_;
    std::optional<std::array<double, 2>> position_;
};

// The desktop of a wlroots-style compositor, on a connection of our own: its outputs are the
// screens, each wallpaper a background-layer surface. It hides an output's picture while the
// output is off or a fullscreen or maximized window covers it, and turns left presses on the
// background into clicks.
class WaylandDesktop : public DesktopHost {
    Q_OBJECT
public:
    // Learns the compositor's globals and outputs with two round trips.
    // With `clients`, the compositor's own wallpaper programs give way while the picture runs.
    explicit WaylandDesktop(wl_display* display, std::unique_ptr<WallpaperClients> clients = nullptr,
                            QObject* parent = nullptr);
    ~WaylandDesktop() override;

    // The compositor offers the background layer (wlr-layer-shell).
    bool hasLayerShell() const { return layerShell_ != nullptr; }

    QString name() const override;
    void start() override;
    void stop() override;
    std::vector<DesktopScreen> screens() const override;
    std::unique_ptr<WallpaperSurface> makeSurface(const DesktopScreen& screen) override;
    bool covered(const QRect& screen, double devicePixelRatio) const override;
    bool displaysAsleep() const override { return asleep_; }

    // The live surfaces, for diagnostics and tests.
    std::vector<LayerSurface*> surfaces() const;

private:
    struct Output;
    struct Placed {
        LayerSurface* surface;
        uint32_t output;  // the output's global name
    };
    static void global(void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version);
    static void globalRemove(void* data, wl_registry* registry, uint32_t name);
    void addOutput(wl_output* output, uint32_t name);
    void watchOutput(Output& output);
    void probePower(Output& output);
    void outputDone(Output& output);
    const Output* outputAt(const QRect& logical) const;
    LayerSurface* surfaceOf(wl_surface* surface) const;
    void pointerAt(wl_surface* surface, std::optional<QPointF> local);
    void updateAsleep();
    void lose();
    void stopWallpaperClients();

    wl_display* display_;
    Proxy<wl_registry> registry_;
    Proxy<wl_compositor> compositor_;
    Proxy<wl_shm> shm_;
    Proxy<zwlr_layer_shell_v1> layerShell_;
    Proxy<wp_viewporter> viewporter_;
    Proxy<zxdg_output_manager_v1> xdgOutputs_;
    Proxy<zwlr_output_power_manager_v1> power_;
    std::vector<std::unique_ptr<Output>> outputs_;
    std::vector<std::pair<wl_seat*, uint32_t>> seatsSeen_;
    std::optional<std::pair<uint32_t, uint32_t>> toplevelManager_;  // global name and version, bound after the outputs
    std::unique_ptr<SeatPointers> pointers_;
    std::unique_ptr<Toplevels> toplevels_;
    std::unique_ptr<SessionIdle> idle_;
    std::unique_ptr<DisplayDispatcher> dispatcher_;
    std::vector<Placed> placed_;
    std::shared_ptr<PointerOverDesktop> pointer_ = std::make_shared<PointerOverDesktop>();
    std::unique_ptr<WallpaperClients> clients_;
    QTimer powerPoll_;
    QTimer clientWatch_;
    bool asleep_ = false;
    bool lost_ = false;
};

// The desktop on our Wayland connection; none where the compositor has no background layer.
// The wallpaper programs it stops are remembered in `settings`.
std::unique_ptr<DesktopHost> makeWaylandDesktop(wl_display* display, std::shared_ptr<SettingsStore> settings);

}  // namespace quellton::wayland
