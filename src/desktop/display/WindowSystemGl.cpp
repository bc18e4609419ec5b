#include "WindowSystemGl.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

#include <X11/Xlib.h>
#include <epoxy/egl.h>
#include <wayland-client-core.h>

#include "EglWindows.h"
#include "ShaderLibrary.h"

namespace quellton {

namespace {

wl_display* waylandDisplay = nullptr;
int handedSocket = -1;

bool useX11(std::string* error) {
    // A connection of our own: Mesa presents from the render thread and must not share Qt's.
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        if (error) *error = "no connection to the X server";
        return false;
    }
    // Probe once so a missing driver is reported here rather than as a fatal error later.
    const auto windows = std::make_shared<X11EglWindows>(display);
    if (!EglProvider::onPlatform(EGL_PLATFORM_X11_KHR, display, windows, error)) return false;
    ShaderLibrary::useProvider([display, windows] {
        return std::unique_ptr<GlContextProvider>(EglProvider::onPlatform(EGL_PLATFORM_X11_KHR, display, windows));
    });
    return true;
}

bool useToolkitWayland(std::string* error) {
    // Mesa keeps its own event queue on the connection, so Qt's serves the render thread as well.
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    auto* display = native ? static_cast<wl_display*>(native->nativeResourceForIntegration("wl_display")) : nullptr;
    if (!display) {
        if (error) *error = "Qt has no Wayland connection";
        return false;
    }
    const auto windows = std::make_shared<WaylandEglWindows>();
    if (!EglProvider::onPlatform(EGL_PLATFORM_WAYLAND_KHR, display, windows, error)) return false;
    ShaderLibrary::useProvider([display, windows] {
        return std::unique_ptr<GlContextProvider>(EglProvider::onPlatform(EGL_PLATFORM_WAYLAND_KHR, display, windows));
    });
    return true;
}

bool useWayland(std::string* error) {
    // Our own connection too: its events are ours to dispatch, and Mesa reads it from the render thread.
    wl_display* display = handedSocket >= 0 ? wl_display_connect_to_fd(handedSocket) : wl_display_connect(nullptr);
    if (!display) {
        if (error) *error = "no connection to the Wayland compositor";
        return false;
    }
    const auto windows = std::make_shared<WaylandEglWindows>();
    if (!EglProvider::onPlatform(EGL_PLATFORM_WAYLAND_KHR, display, windows, error)) {
        wl_display_disconnect(display);
        return false;
    }
    waylandDisplay = display;
    ShaderLibrary::useProvider([display, windows] {
        return std::unique_ptr<GlContextProvider>(EglProvider::onPlatform(EGL_PLATFORM_WAYLAND_KHR, display, windows));
    });
    return true;
}

}  // namespace

bool useWindowSystemGl(std::string* error, bool toolkitWayland) {
    const QString platform = qGuiApp ? QGuiApplication::platformName() : QString();
    if (platform == QStringLiteral("xcb")) return useX11(error);
    if (platform.startsWith(QStringLiteral("wayland")))
        return toolkitWayland && handedSocket < 0 ? useToolkitWayland(error) : useWayland(error);
    if (error) *error = "only X11 and Wayland windows are supported";
    return false;
}

void useWaylandSocket(int fd) { handedSocket = fd; }

wl_display* windowSystemWaylandDisplay() { return waylandDisplay; }

bool windowSystemFromShell() { return handedSocket >= 0; }

}  // namespace quellton
