#include "PowerProfile.h"

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDBusVariant>

#include <atomic>

namespace quellton {

namespace {
std::atomic<bool> powerSaver{false};
const QString service = QStringLiteral("net.hadess.PowerProfiles");
const QString path = QStringLiteral("/net/hadess/PowerProfiles");
}  // namespace

bool lowPowerMode() { return powerSaver.load(std::memory_order_relaxed); }

PowerProfileWatcher::PowerProfileWatcher(QObject* parent) : QObject(parent) {
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    bus.connect(service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
                this, SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    read();
}

void PowerProfileWatcher::read() {
    QDBusInterface properties(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                              QDBusConnection::systemBus());
    const QDBusReply<QDBusVariant> reply =
        properties.call(QStringLiteral("Get"), service, QStringLiteral("ActiveProfile"));
    powerSaver = reply.isValid() && reply.value().variant().toString() == QStringLiteral("power-saver");
}

void PowerProfileWatcher::propertiesChanged(const QString&, const QVariantMap& changed, const QStringList&) {
    if (changed.contains(QStringLiteral("ActiveProfile")))
        powerSaver = changed.value(QStringLiteral("ActiveProfile")).toString() == QStringLiteral("power-saver");
}

}  // namespace quellton
