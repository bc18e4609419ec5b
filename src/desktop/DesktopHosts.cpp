#include "DesktopHosts.h"

#include <QtGlobal>

#include "ShellDesktop.h"
#include "WaylandDesktop.h"
#include "WindowSystemGl.h"
#include "X11Desktop.h"

namespace quellton {

std::unique_ptr<DesktopHost> makeDesktopHost() {
    std::unique_ptr<DesktopHost> host;
    if (wl_display* display = windowSystemWaylandDisplay(); display && windowSystemFromShell())
        host = std::make_unique<gnome::ShellDesktop>(display);
    else if (display)
        host = wayland::makeWaylandDesktop(display);
    else
        host = x11::makeX11Desktop();
    if (host) qInfo("Quellton: Schreibtisch-Anbindung: %s.", qUtf8Printable(host->name()));
    return host;
}

}  // namespace quellton
