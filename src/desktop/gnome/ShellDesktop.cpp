#include "ShellDesktop.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMetaType>

#include <algorithm>
#include <cstring>

#include "Canvas.h"
#include "DisplayDispatcher.h"
#include "ShellWindow.h"
#include "VisualRenderer.h"

namespace quellton::gnome {

namespace {

const QString objectPath = QStringLiteral("/io/github/quellton/Quellton/ShellWallpaper");

template <typename T>
T* bind(wl_registry* registry, uint32_t name, const wl_interface* interface, uint32_t offered, uint32_t wanted) {
    return static_cast<T*>(wl_registry_bind(registry, name, interface, std::min(offered, wanted)));
}

}  // namespace

// One monitor as the shell describes it; `current` holds from its last `done`.
struct ShellDesktop::Monitor {
    ShellDesktop* owner;
    uint32_t globalName;
    wayland::Proxy<wl_output> output;
    wayland::Proxy<zxdg_output_v1> xdg;
    QString name;
    wayland::OutputMode mode;
    std::optional<QRect> logical;
    std::optional<wayland::OutputGeometry> current;
};

ShellDesktop::ShellDesktop(wl_display* display, QObject* parent)
    : DesktopHost(parent), display_(display), registry_(wl_display_get_registry(display)) {
    static const wl_registry_listener listener{&ShellDesktop::global, &ShellDesktop::globalRemove};
    wl_registry_add_listener(registry_.get(), &listener, this);
    wl_display_roundtrip(display_);
    wl_display_roundtrip(display_);
    qDBusRegisterMetaType<MonitorRect>();
    qDBusRegisterMetaType<QList<MonitorRect>>();
    new ShellWallpaperAdaptor(this);
}

ShellDesktop::~ShellDesktop() {
    QDBusConnection::sessionBus().unregisterObject(objectPath);
    dispatcher_.reset();
    monitors_.clear();
    wl_display_flush(display_);
}

void ShellDesktop::global(void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version) {
    auto* self = static_cast<ShellDesktop*>(data);
    const auto is = [interface](const wl_interface& known) { return std::strcmp(interface, known.name) == 0; };
    if (is(wl_compositor_interface)) {
        self->compositor_.reset(bind<wl_compositor>(registry, name, &wl_compositor_interface, version, 4));
    } else if (is(xdg_wm_base_interface)) {
        self->windows_.reset(bind<xdg_wm_base>(registry, name, &xdg_wm_base_interface, version, 1));
        static const xdg_wm_base_listener listener{
            [](void*, xdg_wm_base* base, uint32_t serial) { xdg_wm_base_pong(base, serial); }};
        xdg_wm_base_add_listener(self->windows_.get(), &listener, self);
    } else if (is(zxdg_output_manager_v1_interface)) {
        self->xdgOutputs_.reset(
            bind<zxdg_output_manager_v1>(registry, name, &zxdg_output_manager_v1_interface, version, 3));
        for (auto& monitor : self->monitors_) self->watch(*monitor);
    } else if (is(wl_output_interface)) {
        self->addMonitor(bind<wl_output>(registry, name, &wl_output_interface, version, 4), name);
    }
}

void ShellDesktop::globalRemove(void* data, wl_registry*, uint32_t name) {
    auto* self = static_cast<ShellDesktop*>(data);
    if (std::erase_if(self->monitors_, [name](const auto& m) { return m->globalName == name; }) > 0)
        emit self->screensChanged();
}

void ShellDesktop::addMonitor(wl_output* proxy, uint32_t name) {
    auto monitor = std::make_unique<Monitor>();
    monitor->owner = this;
    monitor->globalName = name;
    monitor->output.reset(proxy);
    monitor->name = QStringLiteral("wl_output-%1").arg(name);
    static const wl_output_listener listener{
        [](void* data, wl_output*, int32_t, int32_t, int32_t, int32_t, int32_t, const char*, const char*,
           int32_t transform) { static_cast<Monitor*>(data)->mode.transform = transform; },
        [](void* data, wl_output*, uint32_t flags, int32_t width, int32_t height, int32_t) {
            if (flags & WL_OUTPUT_MODE_CURRENT) static_cast<Monitor*>(data)->mode.pixels = QSize(width, height);
        },
        [](void* data, wl_output*) {
            auto* m = static_cast<Monitor*>(data);
            m->owner->monitorDone(*m);
        },
        [](void* data, wl_output*, int32_t factor) { static_cast<Monitor*>(data)->mode.scale = factor; },
        [](void* data, wl_output*, const char* name) { static_cast<Monitor*>(data)->name = QString::fromUtf8(name); },
        [](void*, wl_output*, const char*) {},  // description
    };
    wl_output_add_listener(proxy, &listener, monitor.get());
    monitors_.push_back(std::move(monitor));
    watch(*monitors_.back());
}

void ShellDesktop::watch(Monitor& monitor) {
    if (!xdgOutputs_ || monitor.xdg) return;
    monitor.xdg.reset(zxdg_output_manager_v1_get_xdg_output(xdgOutputs_.get(), monitor.output.get()));
    static const zxdg_output_v1_listener listener{
        [](void* data, zxdg_output_v1*, int32_t x, int32_t y) {
            auto* m = static_cast<Monitor*>(data);
            m->logical = QRect(QPoint(x, y), m->logical ? m->logical->size() : QSize());
        },
        [](void* data, zxdg_output_v1*, int32_t width, int32_t height) {
            auto* m = static_cast<Monitor*>(data);
            m->logical = QRect(m->logical ? m->logical->topLeft() : QPoint(), QSize(width, height));
        },
        [](void* data, zxdg_output_v1* xdg) {
            // From version 3 on, wl_output.done closes the whole set instead.
            auto* m = static_cast<Monitor*>(data);
            if (zxdg_output_v1_get_version(xdg) < 3) m->owner->monitorDone(*m);
        },
        [](void*, zxdg_output_v1*, const char*) {},  // name
        [](void*, zxdg_output_v1*, const char*) {},  // description
    };
    zxdg_output_v1_add_listener(monitor.xdg.get(), &listener, &monitor);
}

void ShellDesktop::monitorDone(Monitor& monitor) {
    // The shell's monitor rectangles are logical: only xdg-output tells them.
    if (!monitor.logical || monitor.logical->isEmpty()) return;
    const wayland::OutputGeometry geometry{*monitor.logical, monitor.mode};
    if (monitor.current == geometry) return;
    monitor.current = geometry;
    emit screensChanged();
}

QString ShellDesktop::name() const { return QStringLiteral("GNOME-Shell-Erweiterung"); }

void ShellDesktop::start() {
    QDBusConnection::sessionBus().registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    dispatcher_ = std::make_unique<wayland::DisplayDispatcher>(display_);
    connect(dispatcher_.get(), &wayland::DisplayDispatcher::connectionLost, this, &ShellDesktop::lose);
}

std::vector<DesktopScreen> ShellDesktop::screens() const {
    std::vector<DesktopScreen> result;
    for (const auto& monitor : monitors_)
        if (monitor->current) result.push_back({monitor->name, monitor->current->logical, nullptr});
    // The primary first: the shell names none over Wayland, so the one at the origin.
    std::ranges::stable_partition(result, [](const DesktopScreen& s) { return s.geometry.topLeft() == QPoint(); });
    return result;
}

std::unique_ptr<WallpaperSurface> ShellDesktop::makeSurface(const DesktopScreen& screen) {
    const auto monitor = std::ranges::find_if(monitors_, [&](const auto& m) { return m->name == screen.name && m->current; });
    if (monitor == monitors_.end() || !usable()) return nullptr;
    RendererEnvironment environment = RendererEnvironment::live();
    environment.mainDisplayHeight = Canvas::toBottomUp(QPointF(0, 0)).y();
    auto window = std::make_unique<ShellWindow>(ShellGlobals{compositor_.get(), windows_.get()}, *(*monitor)->current,
                                                environment);
    wl_display_flush(display_);
    return window;
}

bool ShellDesktop::covered(const QRect& screen, double) const {
    return lost_ || std::ranges::find(hidden_, screen) != hidden_.end();
}

void ShellDesktop::click(double x, double y) { emit leftClick(QPointF(x, y)); }

void ShellDesktop::setHidden(std::vector<QRect> monitors) {
    if (monitors == hidden_) return;
    hidden_ = std::move(monitors);
    emit coverageChanged();
}

void ShellDesktop::lose() {
    if (lost_) return;
    lost_ = true;
    qWarning("Quellton: Die Verbindung zur GNOME Shell ist abgebrochen; das Programm endet.");
    emit coverageChanged();
    QCoreApplication::quit();
}

QDBusArgument& operator<<(QDBusArgument& argument, const MonitorRect& rect) {
    argument.beginStructure();
    argument << rect.x << rect.y << rect.width << rect.height;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MonitorRect& rect) {
    argument.beginStructure();
    argument >> rect.x >> rect.y >> rect.width >> rect.height;
    argument.endStructure();
    return argument;
}

ShellWallpaperAdaptor::ShellWallpaperAdaptor(ShellDesktop* desktop) : QDBusAbstractAdaptor(desktop), desktop_(desktop) {}

void ShellWallpaperAdaptor::Click(double x, double y) { desktop_->click(x, y); }

void ShellWallpaperAdaptor::SetHidden(const QList<MonitorRect>& monitors) {
    std::vector<QRect> rects;
    for (const MonitorRect& m : monitors) rects.emplace_back(m.x, m.y, m.width, m.height);
    desktop_->setHidden(std::move(rects));
}

}  // namespace quellton::gnome
