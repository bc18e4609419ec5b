#include "ShellHandOver.h"

#include <fcntl.h>

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "ShellExtension.h"
#include "WindowSystemGl.h"

namespace quellton::ShellHandOver {

namespace {

bool switchOffered = false;

}  // namespace

std::optional<int> takeShellConnection(std::span<const std::string> args) {
    if (std::ranges::find(args, std::string(gnome::shellWallpaperArgument)) == args.end()) return std::nullopt;
    const char* socket = std::getenv("WAYLAND_SOCKET");
    char* end = nullptr;
    const long fd = socket ? std::strtol(socket, &end, 10) : -1;
    if (fd < 0 || *end != '\0') {
        std::cerr << "Quellton: " << gnome::shellWallpaperArgument
                  << " gilt nur für den Start durch die GNOME-Shell-Erweiterung." << std::endl;
        return 1;
    }
    // Only our connection may use it; programs we start must not inherit it.
    unsetenv("WAYLAND_SOCKET");
    fcntl(int(fd), F_SETFD, FD_CLOEXEC);
    useWaylandSocket(int(fd));
    setenv("QT_QPA_PLATFORM", "wayland", 0);
    return std::nullopt;
}

std::optional<int> handOverToShell() {
    using gnome::ExtensionState;
    switch (gnome::extensionState()) {
    case ExtensionState::enabled:
        if (gnome::launchThroughExtension()) return 0;
        std::cerr << "Quellton: Die GNOME-Shell-Erweiterung „Quellton“ antwortet nicht." << std::endl;
        return 1;
    case ExtensionState::disabled:
        std::cerr << "Quellton: Unter GNOME mit Wayland zeigt die Shell-Erweiterung „Quellton“ das Bild hinter den "
                     "Symbolen; sie ist ausgeschaltet. Einschalten im Menü von Quellton oder mit „gnome-extensions "
                     "enable "
                  << qPrintable(gnome::extensionUuid()) << "“." << std::endl;
        switchOffered = true;
        return std::nullopt;
    case ExtensionState::missing:
        std::cerr << "Quellton: Unter GNOME mit Wayland zeigt die Shell-Erweiterung „Quellton“ das Bild hinter den "
                     "Symbolen; die GNOME Shell kennt sie noch nicht. Nach der nächsten Anmeldung lässt sie sich "
                     "einschalten."
                  << std::endl;
        switchOffered = true;
        return std::nullopt;
    case ExtensionState::failed:
        std::cerr << "Quellton: Die GNOME Shell konnte die Erweiterung „Quellton“ nicht laden." << std::endl;
        return std::nullopt;
    case ExtensionState::unknown: break;
    }
    std::cerr << "Quellton: Die GNOME Shell antwortet nicht; ohne sie gibt es unter Wayland kein Bild hinter den "
                 "Symbolen."
              << std::endl;
    return std::nullopt;
}

bool offersExtensionSwitch() { return switchOffered; }

void switchExtensionOn() {
    if (!gnome::enableExtension()) {
        std::cerr << "Quellton: Die GNOME Shell kennt die Erweiterung „Quellton“ noch nicht. Nach der nächsten "
                     "Anmeldung lässt sie sich einschalten."
                  << std::endl;
        return;
    }
    // The extension starts the program now; it becomes the instance once this one has ended.
    QCoreApplication::quit();
}

bool claimWhileHandedOver(const std::function<bool()>& claim) {
    for (int attempt = 0; attempt < 50; ++attempt) {
        if (claim()) return true;
        QThread::msleep(100);
    }
    return false;
}

}  // namespace quellton::ShellHandOver
