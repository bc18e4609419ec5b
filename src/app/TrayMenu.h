#pragma once

#include <QMenu>

#include <array>
#include <functional>

class QAction;

namespace quellton {

class AppModel;

// The tray item's menu, bound both ways to the model: the current visualization's name, stepping,
// the reaction strength, Mix and pause, the gallery and quitting. Whatever changes the model
// (gallery, Mix timer, this menu) shows here at once.
class TrayMenu : public QMenu {
    Q_OBJECT
public:
    TrayMenu(AppModel& model, std::function<void()> openGallery, QWidget* parent = nullptr);

private:
    void showCurrent();
    void showReaction();

    AppModel& model;
    QAction* current = nullptr;
    std::array<QAction*, 4> reactions{};
    QAction* mix = nullptr;
    QAction* pause = nullptr;
};

}  // namespace quellton
