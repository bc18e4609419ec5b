#include "SessionLock.h"

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
const QString lockedHint = QStringLiteral("LockedHint");

}  // namespace

SessionLock::SessionLock(SessionLockSources sources, QObject* parent) : QObject(parent), sources_(std::move(sources)) {}

void SessionLock::start() {
    // KDE and others speak the freedesktop interface, GNOME its own with the same signal.
    for (const QString& interface : {QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("org.gnome.ScreenSaver")}) {
        sources_.sessionBus.connect(QString(), QString(), interface, QStringLiteral("ActiveChanged"), this,
                                    SLOT(onScreenSaverActive(bool)));
    }
    if (!sources_.logindBus.isConnected()) return;
    if (sources_.sessionPath.isEmpty()) {
        resolveSession();
    } else {
        watchSession(sources_.sessionPath);
    }
}

void SessionLock::resolveSession() {
    // The session of this process; a program started outside any session (a user service)
    // takes the user's graphical session ("auto").
    auto ask = [this](const QString& method, const QVariant& argument, auto orElse) {
        QDBusMessage call = QDBusMessage::createMethodCall(sources_.logindService, QStringLiteral("/org/freedesktop/login1"),
                                                           QStringLiteral("org.freedesktop.login1.Manager"), method);
        call << argument;
        auto* watcher = new QDBusPendingCallWatcher(sources_.logindBus.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, orElse](QDBusPendingCallWatcher* done) {
            done->deleteLater();
            const QDBusPendingReply<QDBusObjectPath> reply = *done;
            if (reply.isValid()) {
                watchSession(reply.value().path());
            } else {
                orElse();
            }
        });
    };
    const QPointer<SessionLock> self(this);
    ask(QStringLiteral("GetSessionByPID"), QVariant::fromValue(static_cast<uint>(getpid())), [self, ask] {
        if (self) ask(QStringLiteral("GetSession"), QVariant(QStringLiteral("auto")), [] {});
    });
}

void SessionLock::watchSession(const QString& path) {
    QDBusConnection& bus = sources_.logindBus;
    const QString& service = sources_.logindService;
    bus.connect(service, path, sessionInterface, QStringLiteral("Lock"), this, SLOT(onLock()));
    bus.connect(service, path, sessionInterface, QStringLiteral("Unlock"), this, SLOT(onUnlock()));
    bus.connect(service, path, propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                SLOT(onSessionProperties(QString, QVariantMap, QStringList)));
    if (!service.isEmpty()) readLockedHint(path);
}

void SessionLock::readLockedHint(const QString& path) {
    QDBusMessage call = QDBusMessage::createMethodCall(sources_.logindService, path, propertiesInterface, QStringLiteral("Get"));
    call << sessionInterface << lockedHint;
    auto* watcher = new QDBusPendingCallWatcher(sources_.logindBus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *done;
        if (reply.isValid()) update(reply.value().variant().toBool(), screenSaverActive_);
    });
}

void SessionLock::onLock() { update(true, screenSaverActive_); }

void SessionLock::onUnlock() { update(false, screenSaverActive_); }

void SessionLock::onSessionProperties(const QString& interface, const QVariantMap& changed, const QStringList&) {
    if (interface != sessionInterface) return;
    const auto hint = changed.find(lockedHint);
    if (hint != changed.end()) update(hint->toBool(), screenSaverActive_);
}

void SessionLock::onScreenSaverActive(bool active) { update(logindLocked_, active); }

void SessionLock::update(bool logindLocked, bool screenSaverActive) {
    const bool before = locked();
    logindLocked_ = logindLocked;
    screenSaverActive_ = screenSaverActive;
    if (locked() != before) emit lockedChanged(locked());
}

}  // namespace quellton
