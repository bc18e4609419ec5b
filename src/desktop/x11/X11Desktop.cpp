#include "X11Desktop.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <QtGui/qguiapplication_platform.h>

#include <cmath>

#include "Canvas.h"
#include "IconManagerSettings.h"
#include "WallpaperRules.h"
#include "WindowEnvironment.h"

namespace quellton {

namespace x11 {

namespace {

// Qt's geometry in root-window pixels.
QRect rootPixels(const QRect& rect, double devicePixelRatio) {
    const auto scaled = [&](int v) { return int(std::lround(v * devicePixelRatio)); };
    return QRect(scaled(rect.x()), scaled(rect.y()), scaled(rect.width()), scaled(rect.height()));
}

}  // namespace

// A wallpaper that is a Qt window of its own, known to the desktop while it lives.
class WindowWallpaper : public WallpaperSurface {
public:
    WindowWallpaper(X11Desktop& desktop, const DesktopScreen& screen)
        : desktop_(desktop), canvas_(std::make_unique<Canvas>(Role::wallpaper, windowEnvironment())) {
        canvas_->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                          Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnBottomHint);
        canvas_->setTitle(QStringLiteral("Quellton"));
        if (screen.qtScreen) canvas_->setScreen(screen.qtScreen);
        canvas_->setGeometry(screen.geometry);
        canvas_->create();
        desktop_.prepareWindow(*canvas_);
        canvas_->show();
        desktop_.windowShown(*canvas_);
    }
    ~WindowWallpaper() override {
        desktop_.windowClosing(*canvas_);
        canvas_->close();
    }

    LockedInputs& inputs() override { return canvas_->inputs(); }
    QRect geometry() const override { return canvas_->geometry(); }
    double devicePixelRatio() const override { return canvas_->devicePixelRatio(); }
    long framesDrawn() const override { return canvas_->framesDrawn(); }
    Canvas* window() override { return canvas_.get(); }

private:
    X11Desktop& desktop_;
    std::unique_ptr<Canvas> canvas_;
};

X11Desktop::X11Desktop(xcb_connection_t* connection, xcb_window_t root, std::unique_ptr<IconManagerSettings> settings,
                       QObject* parent)
    : DesktopHost(parent),
      connection_(connection),
      settings_(std::move(settings)),
      marker_(connection, root),
      iconLayers_(settings_.get()) {
    connect(&clicks_, &RawClickMonitor::leftButtonPressed, this, [this](QPoint pixel) {
        const QScreen* primary = QGuiApplication::primaryScreen();
        emit leftClick(pixelToGlobal(pixel, primary ? primary->devicePixelRatio() : 1.0));
    });
    connect(&sleep_, &DisplaySleepWatcher::asleepChanged, this, &DesktopHost::displaysAsleepChanged);
    connect(&coverage_, &CoverageWatcher::changed, this, &DesktopHost::coverageChanged);
    connect(&iconLayers_, &IconLayers::blockingChanged, this, &DesktopHost::coverageChanged);
    connect(&iconLayers_, &IconLayers::reparented, this,
            [this](xcb_window_t window, xcb_window_t frame) { marker_.framed(window, frame); });
}

X11Desktop::~X11Desktop() { stop(); }

QString X11Desktop::name() const { return QStringLiteral("X11-Fenster auf der Schreibtischebene"); }

std::unique_ptr<WallpaperSurface> X11Desktop::makeSurface(const DesktopScreen& screen) {
    return std::make_unique<WindowWallpaper>(*this, screen);
}

void X11Desktop::start() {
    // Before our first window maps: nemo decides at its start whether another program owns the desktop.
    if (settings_) settings_->prepare();
    // Each part works alone: a display without XInput 2 or DPMS still gets its wallpaper.
    if (!clicks_.start()) qWarning("Quellton: Klicks auf den Schreibtisch sind nicht verfügbar (XInput 2 fehlt).");
    sleep_.start();
    coverage_.start();
    iconLayers_.start();
}

void X11Desktop::stop() {
    if (stopped_) return;
    stopped_ = true;
    iconLayers_.stop();
    if (settings_) settings_->finish();
}

void X11Desktop::prepareWindow(QWindow& window) { marker_.beforeMap(static_cast<xcb_window_t>(window.winId())); }

void X11Desktop::windowShown(QWindow& window) {
    marker_.afterMap(static_cast<xcb_window_t>(window.winId()));
    // A canvas shows the icon layer over its picture where the layer is opaque.
    if (const auto* canvas = qobject_cast<const Canvas*>(&window)) {
        const double ratio = window.devicePixelRatio();
        iconLayers_.addWindow(static_cast<xcb_window_t>(window.winId()), rootPixels(window.geometry(), ratio), ratio,
                              canvas->overlay());
    }
}

void X11Desktop::windowClosing(QWindow& window) { iconLayers_.removeWindow(static_cast<xcb_window_t>(window.winId())); }

bool X11Desktop::covered(const QRect& screen, double devicePixelRatio) const {
    const QRect pixels = rootPixels(screen, devicePixelRatio);
    return coverage_.covered(pixels) || iconLayers_.blocks(pixels);
}

std::unique_ptr<DesktopHost> makeX11Desktop() {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection()) return nullptr;
    xcb_connection_t* connection = x11->connection();
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    return std::make_unique<X11Desktop>(connection, screen->root, makeIconManagerSettings());
}

}  // namespace x11

}  // namespace quellton
