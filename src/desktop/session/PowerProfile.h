#pragma once

#include <QObject>

namespace quellton {

// Follows power-profiles-daemon on the system bus: whether its active profile is "power-saver".
// Main thread.
class PowerProfileWatcher : public QObject {
    Q_OBJECT
public:
    explicit PowerProfileWatcher(QObject* parent = nullptr);
    bool powerSaver() const { return powerSaver_; }

signals:
    void powerSaverChanged(bool on);

private slots:
    void propertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);

private:
    void setProfile(const QString& profile);

    bool powerSaver_ = false;
};

}  // namespace quellton
