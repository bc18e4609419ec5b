#include "PortalAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace quellton {

namespace {
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");

// Read() wraps the value in one variant more than the signal does; unwrap whatever comes.
QVariant unwrap(QVariant value) {
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}
}  // namespace

PortalAppearance::PortalAppearance(QObject* parent) : AppearanceSource(parent) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // The whole message: Qt 6.4 refuses a QDBusVariant parameter in a slot connected by name.
    bus.connect(service, path, settings, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QDBusMessage)));
    QDBusMessage read = QDBusMessage::createMethodCall(service, path, settings, QStringLiteral("Read"));
    read << group << key;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(read, 3000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (!reply.isError()) take(reply.argumentAt<0>().variant());
        call->deleteLater();
    });
}

void PortalAppearance::settingChanged(const QDBusMessage& message) {
    const QList<QVariant> args = message.arguments();
    if (args.size() == 3 && args[0].toString() == group && args[1].toString() == key) take(args[2]);
}

void PortalAppearance::take(const QVariant& value) {
    const QVariant scheme = unwrap(value);
    bool ok = false;
    const uint number = scheme.toUInt(&ok);
    const auto dark = ok ? darkFromPortalScheme(number) : std::nullopt;
    if (dark == scheme_) return;
    scheme_ = dark;
    emit changed();
}

}  // namespace quellton
