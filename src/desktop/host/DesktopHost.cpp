#include "DesktopHost.h"

#include <QGuiApplication>
#include <QScreen>

namespace quellton {

std::vector<DesktopScreen> qtScreens() {
    std::vector<DesktopScreen> result;
    for (QScreen* screen : QGuiApplication::screens()) result.push_back({screen->name(), screen->geometry(), screen});
    return result;
}

}  // namespace quellton
