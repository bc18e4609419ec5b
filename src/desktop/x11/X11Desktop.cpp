#include "X11Desktop.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <QtGui/qguiapplication_platform.h>

#include <cmath>

#include "WallpaperRules.h"

namespace quellton {

namespace x11 {

X11Desktop::X11Desktop(xcb_connection_t* connection, xcb_window_t root, QObject* parent)
    : DesktopBackend(parent), connection_(connection), marker_(connection, root) {
    connect(&clicks_, &RawClickMonitor::leftButtonPressed, this, [this](QPoint pixel) {
        const QScreen* primary = QGuiApplication::primaryScreen();
        emit leftClick(pixelToGlobal(pixel, primary ? primary->devicePixelRatio() : 1.0));
    });
    connect(&sleep_, &DisplaySleepWatcher::asleepChanged, this, &DesktopBackend::displaysAsleepChanged);
    connect(&coverage_, &CoverageWatcher::changed, this, &DesktopBackend::coverageChanged);
}

void X11Desktop::start() {
    // Each part works alone: a display without XInput 2 or DPMS still gets its wallpaper.
    if (!clicks_.start()) qWarning("Quellton: Klicks auf den Schreibtisch sind nicht verfügbar (XInput 2 fehlt).");
    sleep_.start();
    coverage_.start();
}

void X11Desktop::prepareWindow(QWindow& window) { marker_.beforeMap(static_cast<xcb_window_t>(window.winId())); }

void X11Desktop::windowShown(QWindow& window) { marker_.afterMap(static_cast<xcb_window_t>(window.winId())); }

bool X11Desktop::covered(const QRect& screen, double devicePixelRatio) const {
    const auto scaled = [&](int v) { return int(std::lround(v * devicePixelRatio)); };
    return coverage_.covered(QRect(scaled(screen.x()), scaled(screen.y()), scaled(screen.width()),
                                   scaled(screen.height())));
}

std::unique_ptr<DesktopBackend> makeX11Desktop() {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection()) return nullptr;
    xcb_connection_t* connection = x11->connection();
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    return std::make_unique<X11Desktop>(connection, screen->root);
}

}  // namespace x11

}  // namespace quellton
