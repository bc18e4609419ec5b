#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

#include <gtest/gtest.h>

#include "LogindSession.h"


namespace quellton::test {

// Sends a signal from a connection of its own, as another program on the bus would.
inline void emitSignal(const QString& path, const QString& interface, const QString& name, const QVariantList& arguments) {
    QDBusConnection sender = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("sender"));
    QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
    message.setArguments(arguments);
    ASSERT_TRUE(sender.send(message));
}

// Session signals from anyone on the private session bus, for a session path of the test's choice.
inline SessionLockSources privateSessionSources(const QString& sessionPath) {
    SessionLockSources sources;
    sources.logindBus = QDBusConnection::sessionBus();
    sources.logindService.clear();
    sources.sessionPath = sessionPath;
    return sources;
}

}  // namespace quellton::test
