#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace quellton {

// Where the lock signals come from. The defaults are the real services; tests point both at a
// private session bus and a path of their own.
struct SessionLockSources {
    QDBusConnection sessionBus = QDBusConnection::sessionBus();
    QDBusConnection logindBus = QDBusConnection::systemBus();
    // Empty: accept the signals from any sender (and read no initial LockedHint).
    QString logindService = QStringLiteral("org.freedesktop.login1");
    // Empty: ask logind for the session of this program.
    QString sessionPath;
};

// Whether the login session is locked: logind's Lock/Unlock signals and LockedHint property,
// and the screen saver's ActiveChanged signal on the session bus.
class SessionLock : public QObject {
    Q_OBJECT
public:
    explicit SessionLock(SessionLockSources sources = {}, QObject* parent = nullptr);

    void start();
    bool locked() const { return logindLocked_ || screenSaverActive_; }

signals:
    void lockedChanged(bool locked);

private slots:
    void onLock();
    void onUnlock();
    void onSessionProperties(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);
    void onScreenSaverActive(bool active);

private:
    void resolveSession();
    void watchSession(const QString& path);
    void readLockedHint(const QString& path);
    void update(bool logindLocked, bool screenSaverActive);

    SessionLockSources sources_;
    bool logindLocked_ = false;
    bool screenSaverActive_ = false;
};

}  // namespace quellton
