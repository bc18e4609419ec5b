#include "GraphicalSession.h"

#include <sys/stat.h>
#include <wayland-client.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace quellton {

namespace {

bool nonEmpty(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

bool xServerAnswers() {
    if (!nonEmpty("DISPLAY")) return false;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool ok = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return ok;
}

bool waylandSocketExists() {
    if (!nonEmpty("WAYLAND_DISPLAY")) return false;
    std::string socket = std::getenv("WAYLAND_DISPLAY");
    if (socket.front() != '/') {
        if (!nonEmpty("XDG_RUNTIME_DIR")) return false;
        socket = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/" + socket;
    }
    struct stat info {};
    return stat(socket.c_str(), &info) == 0 && S_ISSOCK(info.st_mode);
}

// Whether the compositor announces the background layer's global.
bool compositorHasLayerShell() {
    wl_display* display = wl_display_connect(nullptr);
    if (!display) return false;
    bool found = false;
    wl_registry* registry = wl_display_get_registry(display);
    static const wl_registry_listener listener{
        [](void* data, wl_registry*, uint32_t, const char* interface, uint32_t) {
            if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0) *static_cast<bool*>(data) = true;
        },
        [](void*, wl_registry*, uint32_t) {},
    };
    wl_registry_add_listener(registry, &listener, &found);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return found;
}

void usePlatform(const char* platform) {
    if (!nonEmpty("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", platform, 1);
}

}  // namespace

DisplayServer chooseDisplayServer() {
    const std::string chosen = nonEmpty("QT_QPA_PLATFORM") ? std::getenv("QT_QPA_PLATFORM") : "";
    const bool wantsX11 = chosen.starts_with("xcb");
    if (!wantsX11 && waylandSocketExists()) {
        if (!compositorHasLayerShell()) return DisplayServer::waylandWithoutBackground;
        usePlatform("wayland");
        return DisplayServer::wayland;
    }
    if (xServerAnswers()) {
        usePlatform("xcb");
        return DisplayServer::x11;
    }
    return DisplayServer::none;
}

bool isGnomeShell(const char* desktop) { return desktop && std::string(desktop).find("GNOME") != std::string::npos; }

std::string noBackgroundLayerMessage() {
    return "Quellton: Dieser Wayland-Compositor lässt kein Bild hinter die Schreibtischsymbole (es fehlt wlr-layer-shell). "
           "Melde dich in einer X11-Sitzung an, dort läuft Quellton.";
}

}  // namespace quellton
