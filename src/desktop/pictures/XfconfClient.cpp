#include "XfconfClient.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <utility>

namespace quellton {

namespace {

const QString service = QStringLiteral("org.xfce.Xfconf");
const QString path = QStringLiteral("/org/xfce/Xfconf");
const QString interface = QStringLiteral("org.xfce.Xfconf");
// Long enough for xfconfd to be started by the bus, short enough not to freeze a desktop.
constexpr int timeoutMs = 5000;

QDBusMessage call(const QDBusConnection& bus, const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, timeoutMs);
}

bool succeeded(const QDBusMessage& reply) { return reply.type() == QDBusMessage::ReplyMessage; }

// A value as it came off the bus, with its variant wrappers and array arguments turned into
// plain QVariants and QVariantLists.
QVariant plain(const QVariant& value) {
    if (value.userType() == qMetaTypeId<QDBusVariant>()) return plain(value.value<QDBusVariant>().variant());
    if (value.userType() != qMetaTypeId<QDBusArgument>()) return value;
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::ArrayType) return value;
    QVariantList list;
    argument.beginArray();
    while (!argument.atEnd()) list.append(plain(argument.asVariant()));
    argument.endArray();
    return list;
}

// Arrays go out as "av": every element in a variant of its own type, as xfconfd expects.
QVariant wire(const QVariant& value) {
    if (value.userType() != QMetaType::QVariantList) return value;
    QDBusArgument argument;
    argument.beginArray(qMetaTypeId<QDBusVariant>());
    for (const QVariant& element : value.toList()) argument << QDBusVariant(wire(element));
    argument.endArray();
    return QVariant::fromValue(argument);
}

}  // namespace

XfconfClient::XfconfClient(QString channel, QDBusConnection bus) : channel_(std::move(channel)), bus_(std::move(bus)) {}

std::optional<QVariant> XfconfClient::get(const QString& property) const {
    const QDBusMessage reply = call(bus_, QStringLiteral("GetProperty"), {channel_, property});
    if (!succeeded(reply) || reply.arguments().isEmpty()) return std::nullopt;
    return plain(reply.arguments().constFirst());
}

bool XfconfClient::exists(const QString& property) const {
    const QDBusMessage reply = call(bus_, QStringLiteral("PropertyExists"), {channel_, property});
    return succeeded(reply) && !reply.arguments().isEmpty() && reply.arguments().constFirst().toBool();
}

QVariantMap XfconfClient::properties(const QString& base) const {
    const QDBusMessage reply = call(bus_, QStringLiteral("GetAllProperties"), {channel_, base});
    if (!succeeded(reply) || reply.arguments().isEmpty()) return {};
    QVariantMap map = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
    for (QVariant& value : map) value = plain(value);
    return map;
}

bool XfconfClient::set(const QString& property, const QVariant& value) {
    return succeeded(call(bus_, QStringLiteral("SetProperty"),
                          {channel_, property, QVariant::fromValue(QDBusVariant(wire(value)))}));
}

bool XfconfClient::reset(const QString& property, bool recursive) {
    return succeeded(call(bus_, QStringLiteral("ResetProperty"), {channel_, property, recursive}));
}

}  // namespace quellton
