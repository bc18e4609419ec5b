#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QSystemTrayIcon;

namespace quellton {

class AppModel;
class TrayHost;
class TrayMenu;

// The item in the desktop panel's tray: the symbol, the tooltip "Quellton", the menu on a right
// click and the gallery on a left click. Without a tray the program runs on and says so once; the
// item appears as soon as a panel offers a tray.
class TrayItem : public QObject {
    Q_OBJECT
public:
    TrayItem(AppModel& model, std::function<void()> openGallery, QObject* parent = nullptr);
    ~TrayItem() override;

private:
    void show();

    std::function<void()> openGallery;
    std::unique_ptr<TrayMenu> menu;
    TrayHost* host;
    std::unique_ptr<QSystemTrayIcon> icon;  // goes before the menu it shows
};

}  // namespace quellton
