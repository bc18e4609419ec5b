#include "WindowEnvironment.h"

#include <QGuiApplication>

#include "Canvas.h"
#include "X11Pointer.h"

namespace quellton {

RendererEnvironment windowEnvironment() {
    RendererEnvironment env = canvasEnvironment();
    if (QGuiApplication::platformName() == QStringLiteral("xcb")) env.pointer = x11PointerPosition;
    return env;
}

}  // namespace quellton
