#include "TrayItem.h"

#include <QSystemTrayIcon>

#include "AppIcons.h"
#include "TrayHost.h"
#include "TrayMenu.h"

namespace quellton {

TrayItem::TrayItem(AppModel& model, std::function<void()> openGallery, QObject* parent)
    : QObject(parent),
      openGallery(openGallery),
      menu(std::make_unique<TrayMenu>(model, std::move(openGallery))),
      host(new TrayHost(this)) {
    if (TrayHost::present()) {
        show();
        return;
    }
    qWarning("Quellton: Kein Infobereich in der Leiste gefunden. Quellton läuft weiter; "
             "ein erneuter Start öffnet die Galerie.");
    connect(host, &TrayHost::appeared, this, &TrayItem::show);
    host->watch();
}

TrayItem::~TrayItem() = default;

void TrayItem::show() {
    icon = std::make_unique<QSystemTrayIcon>(traySymbol());
    icon->setToolTip(QStringLiteral("Quellton"));
    icon->setContextMenu(menu.get());
    connect(icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) openGallery();
    });
    icon->show();
}

}  // namespace quellton
