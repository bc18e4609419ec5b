#include "SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace quellton {

namespace {

const QString serviceName = QStringLiteral(QUELLTON_APP_ID);
// The object path that org.freedesktop.Application derives from the name.
const QString objectPath = QStringLiteral("/io/github/quellton/Quellton");

}  // namespace

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) { new ApplicationAdaptor(this); }

bool SingleInstance::claim() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qWarning("Quellton: Kein Sitzungsbus; ein zweiter Start wird nicht erkannt.");
        return true;
    }
    if (!bus.registerService(serviceName)) return false;
    bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    return true;
}

bool SingleInstance::running() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(serviceName).value();
}

bool SingleInstance::activateRunning() {
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName, objectPath, QStringLiteral("org.freedesktop.Application"),
                                                       QStringLiteral("Activate"));
    call << QVariantMap();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 5000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

ApplicationAdaptor::ApplicationAdaptor(SingleInstance* instance) : QDBusAbstractAdaptor(instance), instance_(instance) {}

void ApplicationAdaptor::Activate(const QVariantMap&) { emit instance_->activated(); }

void ApplicationAdaptor::Open(const QStringList&, const QVariantMap&) { emit instance_->activated(); }

void ApplicationAdaptor::ActivateAction(const QString&, const QVariantList&, const QVariantMap&) {
    emit instance_->activated();
}

}  // namespace quellton
