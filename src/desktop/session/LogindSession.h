#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>

namespace quellton {

// Where the session signals come from. The defaults are the real services; tests point both at a
// private session bus and a path of their own.
struct SessionLockSources {
    QDBusConnection sessionBus = QDBusConnection::sessionBus();
    QDBusConnection logindBus = QDBusConnection::systemBus();
    // Empty: accept the signals from any sender (and read no initial property values).
    QString logindService = QStringLiteral("org.freedesktop.login1");
    // Empty: ask logind for the session of this program.
    QString sessionPath;
};

// Calls `found` with the session path of the sources, else with the path of this program's logind
// session, or of the user's graphical session for a program started outside one (a user service);
// never when there is none.
void findLogindSession(const SessionLockSources& sources, QObject* context, std::function<void(const QString&)> found);

// Reads one boolean property of the session and calls `done` with it; never on failure.
void readSessionFlag(const SessionLockSources& sources, const QString& path, const QString& property, QObject* context,
                     std::function<void(bool)> done);

// Subscribes a slot taking (QString, QVariantMap, QStringList) to the session's property changes.
void watchSessionProperties(const SessionLockSources& sources, const QString& path, QObject* receiver, const char* slot);

}  // namespace quellton
