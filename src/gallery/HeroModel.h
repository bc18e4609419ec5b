#pragma once

#include <QObject>
#include <QString>

namespace quellton {

class AppModel;

// What the hero shows: the hovered visualization while a card is hovered, else the running one.
class HeroModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString shownID READ shownID NOTIFY shownIDChanged)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString category READ category NOTIFY changed)
    Q_PROPERTY(bool previewing READ previewing NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)

public:
    explicit HeroModel(AppModel& model, QObject* parent = nullptr);

    QString shownID() const;
    QString name() const;
    // The category's title in capitals.
    QString category() const;
    // A card other than the running one is hovered.
    bool previewing() const;
    QString hint() const;

signals:
    void changed();
    // Another visualization is shown (not only another hint).
    void shownIDChanged();

private:
    void update();

    AppModel& model_;
    QString shown_;
};

}  // namespace quellton
