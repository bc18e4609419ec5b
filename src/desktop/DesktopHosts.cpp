#include "DesktopHosts.h"

#include <QtGlobal>

#include "PlasmaDesktop.h"
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

}  // namespace

std::unique_ptr<DesktopHost> makeDesktopHost(std::shared_ptr<SettingsStore> settings) {
    std::unique_ptr<DesktopHost> host;
    if (plasmaSession())
        host = std::make_unique<plasma::PlasmaDesktop>(std::move(settings));
    else if (wl_display* display = windowSystemWaylandDisplay())
        host = wayland::makeWaylandDesktop(display);
    else
        host = x11::makeX11Desktop();
    if (host) qInfo("Quellton: Schreibtisch-Anbindung: %s.", qUtf8Printable(host->name()));
    return host;
}

}  // namespace quellton
