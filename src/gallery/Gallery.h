#pragma once

#include <QObject>
#include <QString>

#include "CardModel.h"
#include "ControlsModel.h"
#include "HeroModel.h"
#include "SidebarModel.h"

namespace quellton {

class AppModel;

// The state of one gallery window that QML binds to: the sidebar selection, the cards it filters,
// the hero, the titles, the actions of the cards, and what the toolbar's controls need.
class Gallery : public QObject {
    Q_OBJECT
    Q_PROPERTY(SidebarModel* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(CardModel* cards READ cards CONSTANT)
    Q_PROPERTY(HeroModel* hero READ hero CONSTANT)
    Q_PROPERTY(ControlsModel* controls READ controls CONSTANT)
    Q_PROPERTY(int selectedRow READ selectedRow WRITE select NOTIFY selectionChanged)
    Q_PROPERTY(QString title READ title NOTIFY selectionChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY subtitleChanged)
    Q_PROPERTY(QString windowTitle READ windowTitle NOTIFY windowTitleChanged)

public:
    explicit Gallery(AppModel& model, QObject* parent = nullptr);

    SidebarModel* sidebar() { return &sidebar_; }
    CardModel* cards() { return &cards_; }
    HeroModel* hero() { return &hero_; }
    ControlsModel* controls() { return &controls_; }

    // -1 is no selection, which shows everything.
    int selectedRow() const { return selectedRow_; }
    void select(int row);
    // The window was closed: nothing is under the pointer, and the next opening starts with everything.
    void reset();

    QString title() const;
    QString subtitle() const;
    // Title bars have no subtitle line, so the window title carries both.
    QString windowTitle() const;

    Q_INVOKABLE void chooseCard(const QString& id);
    Q_INVOKABLE void toggleMix(const QString& id);
    Q_INVOKABLE void enterCard(const QString& id);
    // Clears the hover only while it is still this card's, whichever of two cards' events comes first.
    Q_INVOKABLE void leaveCard(const QString& id);

signals:
    void selectionChanged();
    void subtitleChanged();
    void windowTitleChanged();

private:
    AppModel& model_;
    SidebarModel sidebar_;
    CardModel cards_;
    HeroModel hero_;
    ControlsModel controls_;
    int selectedRow_ = 0;
};

}  // namespace quellton
