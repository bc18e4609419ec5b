#pragma once

#include <QObject>

namespace quellton {

// True while the system's power profile is "power-saver"; readable from any thread.
bool lowPowerMode();

// Follows power-profiles-daemon on the system bus and keeps lowPowerMode() current; main thread.
class PowerProfileWatcher : public QObject {
    Q_OBJECT
public:
    explicit PowerProfileWatcher(QObject* parent = nullptr);

private slots:
    void propertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);

private:
    void read();
};

}  // namespace quellton
