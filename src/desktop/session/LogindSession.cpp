#include "LogindSession.h"

#include <unistd.h>

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPointer>

namespace quellton {

namespace {

const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// Calls a method and hands its reply to `handle` on the context's thread.
template <typename Reply>
void ask(const SessionLockSources& sources, QDBusMessage call, QObject* context, std::function<void(const Reply&)> handle) {
    auto* watcher = new QDBusPendingCallWatcher(sources.logindBus.asyncCall(call), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [handle](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        handle(Reply(*done));
    });
}

}  // namespace

void findLogindSession(const SessionLockSources& sources, QObject* context, std::function<void(const QString&)> found) {
    if (!sources.sessionPath.isEmpty()) return found(sources.sessionPath);
    auto byMethod = [sources, context](const QString& method, const QVariant& argument, auto orElse, auto found) {
        QDBusMessage call = QDBusMessage::createMethodCall(sources.logindService, QStringLiteral("/org/freedesktop/login1"),
                                                           QStringLiteral("org.freedesktop.login1.Manager"), method);
        call << argument;
        ask<QDBusPendingReply<QDBusObjectPath>>(sources, call, context,
                                                [orElse, found](const QDBusPendingReply<QDBusObjectPath>& reply) {
                                                    if (reply.isValid()) {
                                                        found(reply.value().path());
                                                    } else {
                                                        orElse();
                                                    }
                                                });
    };
    const QPointer<QObject> alive(context);
    byMethod(QStringLiteral("GetSessionByPID"), QVariant::fromValue(static_cast<uint>(getpid())),
             [alive, byMethod, found] {
                 if (alive) byMethod(QStringLiteral("GetSession"), QVariant(QStringLiteral("auto")), [] {}, found);
             },
             found);
}

void readSessionFlag(const SessionLockSources& sources, const QString& path, const QString& property, QObject* context,
                     std::function<void(bool)> done) {
    QDBusMessage call = QDBusMessage::createMethodCall(sources.logindService, path, propertiesInterface, QStringLiteral("Get"));
    call << sessionInterface << property;
    ask<QDBusPendingReply<QDBusVariant>>(sources, call, context, [done](const QDBusPendingReply<QDBusVariant>& reply) {
        if (reply.isValid()) done(reply.value().variant().toBool());
    });
}

void watchSessionProperties(const SessionLockSources& sources, const QString& path, QObject* receiver, const char* slot) {
    QDBusConnection bus = sources.logindBus;
    bus.connect(sources.logindService, path, propertiesInterface, QStringLiteral("PropertiesChanged"), receiver, slot);
}

}  // namespace quellton
