#include "SessionLock.h"

#include <QDBusConnection>

namespace quellton {

namespace {

const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
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
    findLogindSession(sources_, this, [this](const QString& path) { watchSession(path); });
}

void SessionLock::watchSession(const QString& path) {
    QDBusConnection& bus = sources_.logindBus;
    const QString& service = sources_.logindService;
    bus.connect(service, path, sessionInterface, QStringLiteral("Lock"), this, SLOT(onLock()));
    bus.connect(service, path, sessionInterface, QStringLiteral("Unlock"), this, SLOT(onUnlock()));
    watchSessionProperties(sources_, path, this, SLOT(onSessionProperties(QString, QVariantMap, QStringList)));
    if (!service.isEmpty())
        readSessionFlag(sources_, path, lockedHint, this, [this](bool locked) { update(locked, screenSaverActive_); });
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
