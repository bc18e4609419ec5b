#include "GraphicalSession.h"

#include <sys/stat.h>
#include <xcb/xcb.h>

#include <cstdlib>
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

}  // namespace

bool graphicalSessionAvailable() { return xServerAnswers() || waylandSocketExists(); }

void preferX11Platform() {
    if (!nonEmpty("QT_QPA_PLATFORM") && xServerAnswers()) setenv("QT_QPA_PLATFORM", "xcb", 1);
}

}  // namespace quellton
