#include "WindowSystemGl.h"

#include <QGuiApplication>

#include <X11/Xlib.h>

#include "ShaderLibrary.h"
#include "gl/EglProvider.h"

namespace quellton {

bool useWindowSystemGl(std::string* error) {
    if (!qGuiApp || QGuiApplication::platformName() != QStringLiteral("xcb")) {
        if (error) *error = "only X11 windows are supported so far";
        return false;
    }
    // A connection of our own: Mesa presents from the render thread and must not share Qt's.
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        if (error) *error = "no connection to the X server";
        return false;
    }
    // Probe once so a missing driver is reported here rather than as a fatal error later.
    std::string why;
    if (!EglProvider::forX11(display, &why)) {
        if (error) *error = why;
        return false;
    }
    ShaderLibrary::useProvider([display] { return std::unique_ptr<GlContextProvider>(EglProvider::forX11(display)); });
    return true;
}

}  // namespace quellton
