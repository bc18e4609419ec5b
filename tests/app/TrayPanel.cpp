#include "TrayPanel.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDateTime>

namespace quellton::test {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

MenuEntry readEntry(const QDBusArgument& argument) {
    MenuEntry entry;
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        entry.children.push_back(readEntry(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return entry;
}

}  // namespace

StatusNotifierWatcher::StatusNotifierWatcher(QDBusConnection bus) : bus(std::move(bus)) {}

StatusNotifierWatcher::~StatusNotifierWatcher() { release(); }

bool StatusNotifierWatcher::claim() {
    if (!bus.registerObject(watcherPath, this,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                                QDBusConnection::ExportAllProperties))
        return false;
    return bus.registerService(watcherService);
}

void StatusNotifierWatcher::release() {
    bus.unregisterService(watcherService);
    bus.unregisterObject(watcherPath);
    items.clear();
}

void StatusNotifierWatcher::RegisterStatusNotifierItem(const QString& service, const QDBusMessage& message) {
    // An item may name itself by its object path alone; then its bus name is the sender's.
    const QString name = service.startsWith(u'/') ? message.service() : service;
    if (!items.contains(name)) items << name;
    emit StatusNotifierItemRegistered(name);
}

void StatusNotifierWatcher::RegisterStatusNotifierHost(const QString&) { emit StatusNotifierHostRegistered(); }

const MenuEntry* MenuEntry::find(const QString& wanted) const {
    if (label() == wanted) return this;
    for (const MenuEntry& child : children)
        if (const MenuEntry* found = child.find(wanted)) return found;
    return nullptr;
}

TrayItemClient::TrayItemClient(QDBusConnection bus, QString service)
    : bus(std::move(bus)), service(std::move(service)), path(QStringLiteral("/StatusNotifierItem")) {}

QVariant TrayItemClient::property(const QString& name) const {
    QDBusMessage get = QDBusMessage::createMethodCall(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                      QStringLiteral("Get"));
    get << itemInterface << name;
    const QDBusMessage reply = bus.call(get, QDBus::BlockWithGui, 5000);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

bool TrayItemClient::activate() const {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, itemInterface, QStringLiteral("Activate"));
    call << 0 << 0;
    return bus.call(call, QDBus::BlockWithGui, 5000).type() == QDBusMessage::ReplyMessage;
}

QString TrayItemClient::menuPath() const { return property(QStringLiteral("Menu")).value<QDBusObjectPath>().path(); }

std::optional<MenuEntry> TrayItemClient::menu() const {
    QDBusMessage call = QDBusMessage::createMethodCall(service, menuPath(), menuInterface, QStringLiteral("GetLayout"));
    call << 0 << -1 << QStringList();
    const QDBusMessage reply = bus.call(call, QDBus::BlockWithGui, 5000);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2) return std::nullopt;
    return readEntry(reply.arguments().at(1).value<QDBusArgument>());
}

bool TrayItemClient::click(int id) const {
    QDBusMessage call = QDBusMessage::createMethodCall(service, menuPath(), menuInterface, QStringLiteral("Event"));
    call << id << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant(0))
         << uint(QDateTime::currentSecsSinceEpoch());
    return bus.call(call, QDBus::BlockWithGui, 5000).type() == QDBusMessage::ReplyMessage;
}

}  // namespace quellton::test
