#include <QGuiApplication>
#include <QScreen>

#include "AppModel.h"
#include "CajaBackdrop.h"
#include "DesktopIconManagerSettings.h"
#include "PcmanfmQtBackdrop.h"
#include "XfdesktopBackdrop.h"

namespace quellton {

namespace {

std::vector<ScreenInfo> qtScreens() {
    std::vector<ScreenInfo> screens;
    QList<QScreen*> list = QGuiApplication::screens();
    // The main screen first, as the picture adapters expect.
    if (QScreen* primary = QGuiApplication::primaryScreen()) {
        list.removeAll(primary);
        list.prepend(primary);
    }
    for (const QScreen* screen : list) screens.push_back({screen->name(), screen->geometry(), screen->devicePixelRatio()});
    return screens;
}

std::optional<PictureDesktop> pictureDesktopOf(IconManager manager) {
    switch (manager) {
    case IconManager::xfdesktop: return PictureDesktop::xfce;
    case IconManager::caja: return PictureDesktop::mate;
    case IconManager::pcmanfmQt: return PictureDesktop::lxqt;
    default: return std::nullopt;
    }
}

}  // namespace

std::unique_ptr<ManagerBackdrop> makeManagerBackdrop(IconManager manager, const QStringList& monitors) {
    switch (manager) {
    case IconManager::xfdesktop: return std::make_unique<XfdesktopBackdrop>(monitors);
    case IconManager::caja: return std::make_unique<CajaBackdrop>();
    case IconManager::pcmanfmQt: return std::make_unique<PcmanfmQtBackdrop>();
    default: return nullptr;
    }
}

std::unique_ptr<IconManagerSettings> makeIconManagerSettings() {
    IconManagerServices services;
    services.backdrop = [](IconManager manager) {
        QStringList monitors;
        for (const ScreenInfo& screen : qtScreens()) monitors.append(screen.name);
        return makeManagerBackdrop(manager, monitors);
    };
    services.picture = [](IconManager manager) -> std::unique_ptr<DesktopPicture> {
        const std::optional<PictureDesktop> desktop = pictureDesktopOf(manager);
        return desktop ? makeDesktopPicture(*desktop) : nullptr;
    };
    services.screens = qtScreens;
    services.windowClass = QStringLiteral("Quellton");
    services.settings = AppModel::shared().settingsStore();
    services.nemoMayManage = [] {
        return nemoMayManageDesktop(qgetenv("XDG_CURRENT_DESKTOP").toStdString(), nemoDesktopRunning());
    };
    return std::make_unique<DesktopIconManagerSettings>(std::move(services));
}

}  // namespace quellton
