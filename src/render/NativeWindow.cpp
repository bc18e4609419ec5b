#include "NativeWindow.h"

#include <QGuiApplication>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>
#include <qpa/qplatformwindow.h>

namespace quellton {

namespace {

bool onWayland() { return QGuiApplication::platformName().startsWith(QStringLiteral("wayland")); }

}  // namespace

std::uintptr_t nativeWindowHandle(QWindow& window) {
    if (!window.handle()) return 0;
    if (!onWayland()) return std::uintptr_t(window.winId());
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    return native ? std::uintptr_t(native->nativeResourceForWindow("surface", &window)) : 0;
}

QObject* waylandPlatformWindow(QWindow& window) {
    return onWayland() ? dynamic_cast<QObject*>(window.handle()) : nullptr;
}

}  // namespace quellton
