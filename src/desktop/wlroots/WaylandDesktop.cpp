#include "WaylandDesktop.h"

#include <QDebug>
#include <QProcessEnvironment>


#include <algorithm>

#include "Canvas.h"
#include "DisplayDispatcher.h"
#include "LayerSurface.h"
#include "SeatPointers.h"
#include "SessionIdle.h"
#include "Toplevels.h"
#include "VisualRenderer.h"
#include "WallpaperClients.h"

namespace quellton::wayland {

namespace {

template <typename T>
T* bind(wl_registry* registry, uint32_t name, const wl_interface* interface, uint32_t offered, uint32_t wanted) {
    return static_cast<T*>(wl_registry_bind(registry, name, interface, std::min(offered, wanted)));
}

}  // namespace

std::optional<std::array<double, 2>> PointerOverDesktop::read() const {
    std::lock_guard guard(lock_);
    return position_;
}

void PointerOverDesktop::write(std::optional<std::array<double, 2>> position) {
    std::lock_guard guard(lock_);
    position_ = position;
}

// One output with what the compositor said of it so far; `current` holds from its last `done`.
struct WaylandDesktop::Output {
    WaylandDesktop* owner;
    uint32_t globalName;
    Proxy<wl_output> output;
    Proxy<zxdg_output_v1> xdg;
    Proxy<zwlr_output_power_v1> power;
    QString name;
    OutputMode mode;
    QPoint position;  // from wl_output, where xdg-output is missing
    std::optional<QRect> logical;  // from xdg-output
    std::optional<OutputGeometry> current;
    std::optional<bool> on;  // its display's power, where the compositor tells
};

WaylandDesktop::WaylandDesktop(wl_display* display, std::unique_ptr<WallpaperClients> clients, QObject* parent)
    : DesktopHost(parent), display_(display), registry_(wl_display_get_registry(display)), clients_(std::move(clients)) {
    static const wl_registry_listener listener{&WaylandDesktop::global, &WaylandDesktop::globalRemove};
    wl_registry_add_listener(registry_.get(), &listener, this);
    wl_display_roundtrip(display_);

    // Bound once the outputs are: the windows' output events refer to our output objects.
    if (toplevelManager_) {
        auto* manager = bind<zwlr_foreign_toplevel_manager_v1>(registry_.get(), toplevelManager_->first,
                                                               &zwlr_foreign_toplevel_manager_v1_interface,
                                                               toplevelManager_->second, 3);
        toplevels_ = std::make_unique<Toplevels>(manager);
        connect(toplevels_.get(), &Toplevels::changed, this, &DesktopHost::coverageChanged);
    }
    SeatPointers::Handlers handlers;
    handlers.moved = [this](wl_surface* surface, QPointF local) { pointerAt(surface, local); };
    handlers.left = [this] { pointerAt(nullptr, std::nullopt); };
    handlers.leftPressed = [this](wl_surface* surface, QPointF local) {
        if (const LayerSurface* layer = surfaceOf(surface)) emit leftClick(layer->geometry().topLeft() + local);
    };
    pointers_ = std::make_unique<SeatPointers>(std::move(handlers), compositor_.get(), shm_.get());
    for (auto [seat, name] : seatsSeen_) pointers_->addSeat(seat, name);
    seatsSeen_.clear();
    wl_display_roundtrip(display_);
}

WaylandDesktop::~WaylandDesktop() {
    dispatcher_.reset();
    pointers_.reset();
    toplevels_.reset();
    outputs_.clear();
    wl_display_flush(display_);
}

void WaylandDesktop::global(void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version) {
    auto* self = static_cast<WaylandDesktop*>(data);
    const auto is = [interface](const wl_interface& known) { return std::strcmp(interface, known.name) == 0; };
    if (is(wl_compositor_interface)) {
        self->compositor_.reset(bind<wl_compositor>(registry, name, &wl_compositor_interface, version, 4));
    } else if (is(wl_shm_interface)) {
        self->shm_.reset(bind<wl_shm>(registry, name, &wl_shm_interface, version, 1));
    } else if (is(zwlr_layer_shell_v1_interface)) {
        self->layerShell_.reset(bind<zwlr_layer_shell_v1>(registry, name, &zwlr_layer_shell_v1_interface, version, 4));
    } else if (is(wp_viewporter_interface)) {
        self->viewporter_.reset(bind<wp_viewporter>(registry, name, &wp_viewporter_interface, version, 1));
    } else if (is(zxdg_output_manager_v1_interface)) {
        self->xdgOutputs_.reset(bind<zxdg_output_manager_v1>(registry, name, &zxdg_output_manager_v1_interface, version, 3));
        for (auto& output : self->outputs_) self->watchOutput(*output);
    } else if (is(zwlr_output_power_manager_v1_interface)) {
        self->power_.reset(bind<zwlr_output_power_manager_v1>(registry, name, &zwlr_output_power_manager_v1_interface,
                                                              version, 1));
        for (auto& output : self->outputs_) self->watchOutput(*output);
    } else if (is(zwlr_foreign_toplevel_manager_v1_interface)) {
        self->toplevelManager_ = {name, version};
    } else if (is(wl_output_interface)) {
        self->addOutput(bind<wl_output>(registry, name, &wl_output_interface, version, 4), name);
    } else if (is(wl_seat_interface)) {
        auto* seat = bind<wl_seat>(registry, name, &wl_seat_interface, version, 5);
        if (self->pointers_) {
            self->pointers_->addSeat(seat, name);
        } else {
            self->seatsSeen_.emplace_back(seat, name);
        }
    }
}

void WaylandDesktop::globalRemove(void* data, wl_registry*, uint32_t name) {
    auto* self = static_cast<WaylandDesktop*>(data);
    if (self->pointers_) self->pointers_->removeSeat(name);
    const auto output = std::ranges::find_if(self->outputs_, [name](const auto& o) { return o->globalName == name; });
    if (output == self->outputs_.end()) return;
    if (self->toplevels_) self->toplevels_->forget((*output)->output.get());
    self->outputs_.erase(output);
    self->updateAsleep();
    emit self->screensChanged();
}

void WaylandDesktop::addOutput(wl_output* proxy, uint32_t name) {
    auto output = std::make_unique<Output>();
    output->owner = this;
    output->globalName = name;
    output->output.reset(proxy);
    output->name = QStringLiteral("wl_output-%1").arg(name);
    static const wl_output_listener listener{
        [](void* data, wl_output*, int32_t x, int32_t y, int32_t, int32_t, int32_t, const char*, const char*,
           int32_t transform) {
            auto* o = static_cast<Output*>(data);
            o->position = QPoint(x, y);
            o->mode.transform = transform;
        },
        [](void* data, wl_output*, uint32_t flags, int32_t width, int32_t height, int32_t) {
            if (flags & WL_OUTPUT_MODE_CURRENT) static_cast<Output*>(data)->mode.pixels = QSize(width, height);
        },
        [](void* data, wl_output*) {
            auto* o = static_cast<Output*>(data);
            o->owner->outputDone(*o);
        },
        [](void* data, wl_output*, int32_t factor) { static_cast<Output*>(data)->mode.scale = factor; },
        [](void* data, wl_output*, const char* name) { static_cast<Output*>(data)->name = QString::fromUtf8(name); },
        [](void*, wl_output*, const char*) {},  // description
    };
    wl_output_add_listener(proxy, &listener, output.get());
    outputs_.push_back(std::move(output));
    watchOutput(*outputs_.back());
}

void WaylandDesktop::watchOutput(Output& output) {
    if (xdgOutputs_ && !output.xdg) {
        output.xdg.reset(zxdg_output_manager_v1_get_xdg_output(xdgOutputs_.get(), output.output.get()));
        static const zxdg_output_v1_listener listener{
            [](void* data, zxdg_output_v1*, int32_t x, int32_t y) {
                auto* o = static_cast<Output*>(data);
                o->logical = QRect(QPoint(x, y), o->logical ? o->logical->size() : QSize());
            },
            [](void* data, zxdg_output_v1*, int32_t width, int32_t height) {
                auto* o = static_cast<Output*>(data);
                o->logical = QRect(o->logical ? o->logical->topLeft() : QPoint(), QSize(width, height));
            },
            [](void* data, zxdg_output_v1* xdg) {
                // From version 3 on, wl_output.done closes the whole set instead.
                auto* o = static_cast<Output*>(data);
                if (zxdg_output_v1_get_version(xdg) < 3) o->owner->outputDone(*o);
            },
            [](void* data, zxdg_output_v1*, const char* name) { static_cast<Output*>(data)->name = QString::fromUtf8(name); },
            [](void*, zxdg_output_v1*, const char*) {},  // description
        };
        zxdg_output_v1_add_listener(output.xdg.get(), &listener, &output);
    }
    probePower(output);
}

void WaylandDesktop::probePower(Output& output) {
    // wlroots gives an output's power control to one client at a time: holding it would make the
    // user's own tools (wlopm and the like) fail, so it is taken only for the one answer.
    if (!power_ || output.power) return;
    output.power.reset(zwlr_output_power_manager_v1_get_output_power(power_.get(), output.output.get()));
    static const zwlr_output_power_v1_listener listener{
        [](void* data, zwlr_output_power_v1*, uint32_t mode) {
            auto* o = static_cast<Output*>(data);
            o->power.reset();
            const bool on = mode == ZWLR_OUTPUT_POWER_V1_MODE_ON;
            if (o->on == on) return;
            o->on = on;
            o->owner->updateAsleep();
            emit o->owner->coverageChanged();
        },
        [](void* data, zwlr_output_power_v1*) {
            // Another client holds the control just now, or the output has none: ask again later.
            static_cast<Output*>(data)->power.reset();
        },
    };
    zwlr_output_power_v1_add_listener(output.power.get(), &listener, &output);
}

void WaylandDesktop::outputDone(Output& output) {
    // Without xdg-output the logical size follows from the mode; with it, wait for its answer.
    if (output.xdg && !output.logical) return;
    const QRect logical = output.logical && !output.logical->isEmpty() ? *output.logical
                                                                      : QRect(output.position, logicalSize(output.mode));
    const OutputGeometry geometry{logical, output.mode};
    if (output.current == geometry) return;
    output.current = geometry;
    for (const Placed& placed : placed_)
        if (placed.output == output.globalName) placed.surface->setOutput(geometry);
    emit screensChanged();
}

QString WaylandDesktop::name() const { return QStringLiteral("wlroots-Hintergrundebene (wlr-layer-shell)"); }

void WaylandDesktop::start() {
    if (power_) {
        // The compositor sends no word when an output goes dark unless asked; as often as X11's DPMS is read.
        connect(&powerPoll_, &QTimer::timeout, this, [this] {
            for (auto& output : outputs_) probePower(*output);
        });
        powerPoll_.start(std::chrono::seconds(2));
    }
    if (clients_) {
        stopWallpaperClients();
        // A compositor starts its client again when its configuration is reloaded.
        connect(&clientWatch_, &QTimer::timeout, this, &WaylandDesktop::stopWallpaperClients);
        clientWatch_.start(std::chrono::seconds(3));
    }
    dispatcher_ = std::make_unique<DisplayDispatcher>(display_);
    connect(dispatcher_.get(), &DisplayDispatcher::connectionLost, this, &WaylandDesktop::lose);
    if (!power_) {
        // Without the compositor's word on its outputs, logind's idle hint stands for sleeping displays.
        idle_ = std::make_unique<SessionIdle>();
        connect(idle_.get(), &SessionIdle::idleChanged, this, &WaylandDesktop::updateAsleep);
        idle_->start();
    }
    updateAsleep();
}

// They would cover the picture: a compositor stacks a newer background surface below older ones.
void WaylandDesktop::stopWallpaperClients() {
    const QStringList stopped = clients_->stopRunning();
    if (!stopped.isEmpty())
        qInfo("Quellton: %s angehalten, solange das Bild läuft; es startet wieder, wenn Quellton endet.",
              qUtf8Printable(stopped.join(QStringLiteral(", "))));
}

// Before our surfaces close, so the clients' pictures come back without a gap.
void WaylandDesktop::stop() {
    clientWatch_.stop();
    if (clients_) clients_->restart();
}

std::vector<DesktopScreen> WaylandDesktop::screens() const {
    std::vector<DesktopScreen> result;
    for (const auto& output : outputs_)
        if (output->current && !output->current->logical.isEmpty())
            result.push_back({output->name, output->current->logical, nullptr});
    return result;
}

std::unique_ptr<WallpaperSurface> WaylandDesktop::makeSurface(const DesktopScreen& screen) {
    const auto output = std::ranges::find_if(outputs_, [&](const auto& o) { return o->name == screen.name && o->current; });
    if (output == outputs_.end() || !layerShell_ || !compositor_) return nullptr;

    RendererEnvironment environment = RendererEnvironment::live();
    environment.pointer = [pointer = pointer_] { return pointer->read(); };
    environment.mainDisplayHeight = Canvas::toBottomUp(QPointF(0, 0)).y();
    const LayerGlobals globals{compositor_.get(), layerShell_.get(), viewporter_.get()};
    auto surface = std::make_unique<LayerSurface>(globals, (*output)->output.get(), *(*output)->current, environment);

    LayerSurface* raw = surface.get();
    placed_.push_back({raw, (*output)->globalName});
    surface->onDestroyed = [this, raw] { std::erase_if(placed_, [raw](const Placed& p) { return p.surface == raw; }); };
    // Its output is going away, which rebuilds; should the output stay, the surface stays dark.
    surface->onClosed = [this] {
        emit coverageChanged();
        emit screensChanged();
    };
    wl_display_flush(display_);
    return surface;
}

bool WaylandDesktop::covered(const QRect& screen, double) const {
    if (lost_) return true;
    const Output* output = outputAt(screen);
    if (!output) return false;
    if (output->on == false) return true;
    const bool closed = std::ranges::any_of(placed_, [output](const Placed& p) {
        return p.output == output->globalName && p.surface->isClosed();
    });
    if (closed) return true;
    return toplevels_ && toplevels_->hides(output->output.get());
}

std::vector<LayerSurface*> WaylandDesktop::surfaces() const {
    std::vector<LayerSurface*> result;
    for (const Placed& placed : placed_) result.push_back(placed.surface);
    return result;
}

const WaylandDesktop::Output* WaylandDesktop::outputAt(const QRect& logical) const {
    const auto output = std::ranges::find_if(outputs_, [&](const auto& o) { return o->current && o->current->logical == logical; });
    return output == outputs_.end() ? nullptr : output->get();
}

LayerSurface* WaylandDesktop::surfaceOf(wl_surface* surface) const {
    const auto placed = std::ranges::find_if(placed_, [surface](const Placed& p) { return p.surface->surface() == surface; });
    return placed == placed_.end() ? nullptr : placed->surface;
}

void WaylandDesktop::pointerAt(wl_surface* surface, std::optional<QPointF> local) {
    const LayerSurface* layer = surfaceOf(surface);
    if (!layer || !local) return pointer_->write(std::nullopt);
    const QPointF global = layer->geometry().topLeft() + *local;
    pointer_->write(std::array<double, 2>{global.x(), global.y()});
}

void WaylandDesktop::updateAsleep() {
    bool asleep = false;
    if (power_) {
        // The displays sleep when every output is off; one dark output only hides its own picture.
        asleep = !outputs_.empty() && std::ranges::all_of(outputs_, [](const auto& o) { return o->on == false; });
    } else if (idle_) {
        asleep = idle_->idle();
    }
    if (asleep == asleep_) return;
    asleep_ = asleep;
    emit displaysAsleepChanged(asleep);
}

void WaylandDesktop::lose() {
    if (lost_) return;
    lost_ = true;
    qWarning("Quellton: Die Verbindung zum Wayland-Compositor ist abgebrochen; das Hintergrundbild steht still.");
    emit coverageChanged();
}

std::unique_ptr<DesktopHost> makeWaylandDesktop(wl_display* display, std::shared_ptr<SettingsStore> settings) {
    QString socket = waylandSocketPath(QProcessEnvironment::systemEnvironment().toStringList());
    auto clients = std::make_unique<WallpaperClients>(std::move(settings), compositorProcess(wl_display_get_fd(display)),
                                                      std::move(socket));
    auto desktop = std::make_unique<WaylandDesktop>(display, std::move(clients));
    if (!desktop->hasLayerShell()) return nullptr;
    return desktop;
}

}  // namespace quellton::wayland
