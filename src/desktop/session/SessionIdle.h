#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include "LogindSession.h"

namespace quellton {

// Whether logind marks the session idle (its IdleHint, which idle daemons such as swayidle set
// when they blank the screens): the sign of sleeping displays where the compositor tells nothing.
class SessionIdle : public QObject {
    Q_OBJECT
public:
    explicit SessionIdle(SessionLockSources sources = {}, QObject* parent = nullptr);

    void start();
    bool idle() const { return idle_; }

signals:
    void idleChanged(bool idle);

private slots:
    void onSessionProperties(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);

private:
    void watchSession(const QString& path);
    void update(bool idle);

    SessionLockSources sources_;
    bool idle_ = false;
};

}  // namespace quellton
