#include "ShellExtension.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QVariantMap>

namespace quellton::gnome {

namespace {

constexpr int answerMs = 5000;

QDBusMessage callShell(const QString& path, const QString& interface, const QString& method,
                       const QVariantList& arguments = {}) {
    QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.gnome.Shell"), path, interface, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call, QDBus::Block, answerMs);
}

QDBusMessage callExtensions(const QString& method, const QVariantList& arguments) {
    return callShell(QStringLiteral("/org/gnome/Shell"), QStringLiteral("org.gnome.Shell.Extensions"), method,
                     arguments);
}

}  // namespace

QString extensionUuid() { return QStringLiteral("quellton@quellton.github.io"); }

ExtensionState extensionState() {
    const QDBusMessage reply = callExtensions(QStringLiteral("GetExtensionInfo"), {extensionUuid()});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return ExtensionState::unknown;
    const QVariantMap info = qdbus_cast<QVariantMap>(reply.arguments().first());
    if (info.isEmpty()) return ExtensionState::missing;
    // The shell's ExtensionState numbers: 1 enabled, 2 disabled, 3 error, 4 out of date, 6 initialized.
    switch (info.value(QStringLiteral("state")).toInt()) {
    case 1: return ExtensionState::enabled;
    case 3:
    case 4: return ExtensionState::failed;
    default: return ExtensionState::disabled;
    }
}

bool enableExtension() {
    const QDBusMessage reply = callExtensions(QStringLiteral("EnableExtension"), {extensionUuid()});
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
           reply.arguments().first().toBool();
}

bool launchThroughExtension() {
    const QDBusMessage reply = callShell(QStringLiteral("/io/github/quellton/Quellton/ShellExtension"),
                                         QStringLiteral("io.github.quellton.Quellton.ShellExtension"),
                                         QStringLiteral("Launch"));
    return reply.type() == QDBusMessage::ReplyMessage;
}

}  // namespace quellton::gnome
