#include "PowerProfile.h"

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDBusVariant>

namespace quellton {

namespace {
const QString service = QStringLiteral("net.hadess.PowerProfiles");
const QString path = QStringLiteral("/net/hadess/PowerProfiles");
const QString activeProfile = QStringLiteral("ActiveProfile");
}  // namespace

PowerProfileWatcher::PowerProfileWatcher(QObject* parent) : QObject(parent) {
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    bus.connect(service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
                this, SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    QDBusInterface properties(service, path, QStringLiteral("org.freedesktop.DBus.Properties"), bus);
    const QDBusReply<QDBusVariant> reply = properties.call(QStringLiteral("Get"), service, activeProfile);
    if (reply.isValid()) setProfile(reply.value().variant().toString());
}

void PowerProfileWatcher::propertiesChanged(const QString&, const QVariantMap& changed, const QStringList&) {
    if (changed.contains(activeProfile)) setProfile(changed.value(activeProfile).toString());
}

void PowerProfileWatcher::setProfile(const QString& profile) {
    const bool saver = profile == QStringLiteral("power-saver");
    if (saver == powerSaver_) return;
    powerSaver_ = saver;
    emit powerSaverChanged(saver);
}

}  // namespace quellton
