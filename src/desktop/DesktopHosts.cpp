#include "DesktopHosts.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtGlobal>

#include "PlasmaDesktop.h"
#include "RawClickMonitor.h"
#include "ShellDesktop.h"
#include "WallpaperRules.h"
#include "WaylandDesktop.h"
#include "WindowSystemGl.h"
#include "X11Desktop.h"

namespace quellton {

namespace {

// plasmashell draws the desktop on both of Plasma's sessions and takes only its own wallpapers.
bool plasmaSession() {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    return desktops.contains(QStringLiteral("KDE"));
}

// Plasma 5's wallpaper plugin cannot reach the program (no D-Bus for QML there). On X11 the
// display's own raw presses stand in; on Wayland nothing does.
void watchX11Clicks(DesktopHost& host) {
    auto* clicks = new x11::RawClickMonitor(&host);
    if (!clicks->start()) return;
    QObject::connect(clicks, &x11::RawClickMonitor::leftButtonPressed, &host, [&host](QPoint pixel) {
        const QScreen* primary = QGuiApplication::primaryScreen();
        emit host.leftClick(pixelToGlobal(pixel, primary ? primary->devicePixelRatio() : 1.0));
    });
}

}  // namespace

std::unique_ptr<DesktopHost> makeDesktopHost(std::shared_ptr<SettingsStore> settings) {
    std::unique_ptr<DesktopHost> host;
    wl_display* display = windowSystemWaylandDisplay();
    if (display && windowSystemFromShell()) {
        host = std::make_unique<gnome::ShellDesktop>(display);
    } else if (plasmaSession()) {
        host = std::make_unique<plasma::PlasmaDesktop>(std::move(settings));
        if (!display) watchX11Clicks(*host);
    } else if (display) {
        host = wayland::makeWaylandDesktop(display, std::move(settings));
    } else {
        host = x11::makeX11Desktop();
    }
    if (host) qInfo("Quellton: Schreibtisch-Anbindung: %s.", qUtf8Printable(host->name()));
    return host;
}

}  // namespace quellton
