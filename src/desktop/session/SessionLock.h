#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

#include "LogindSession.h"

namespace quellton {

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
    void watchSession(const QString& path);
    void update(bool logindLocked, bool screenSaverActive);

    SessionLockSources sources_;
    bool logindLocked_ = false;
    bool screenSaverActive_ = false;
};

}  // namespace quellton
