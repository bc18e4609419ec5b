#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <optional>
#include <vector>

namespace quellton::test {

// The part of a desktop panel that hosts tray items: org.kde.StatusNotifierWatcher with a
// registered host, on the session bus. Qt reads the watcher's properties through introspection,
// so they are real D-Bus properties here.
class StatusNotifierWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registeredItems)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
public:
    explicit StatusNotifierWatcher(QDBusConnection bus) : bus(std::move(bus)) {}
    ~StatusNotifierWatcher() override {
        bus.unregisterService(service);
        bus.unregisterObject(path);
    }

    // Owns the watcher's name; false when another panel has it.
    bool claim() {
        const auto exports = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                             QDBusConnection::ExportAllProperties;
        return bus.registerObject(path, this, exports) && bus.registerService(service);
    }

    QStringList registeredItems() const { return items; }
    bool hostRegistered() const { return true; }
    int protocolVersion() const { return 0; }

public slots:
    void RegisterStatusNotifierItem(const QString& item, const QDBusMessage& message) {
        // An item may name itself by its object path alone; then its bus name is the sender's.
        const QString name = item.startsWith(u'/') ? message.service() : item;
        if (!items.contains(name)) items << name;
        emit StatusNotifierItemRegistered(name);
    }
    void RegisterStatusNotifierHost(const QString&) { emit StatusNotifierHostRegistered(); }

signals:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    inline static const QString service = QStringLiteral("org.kde.StatusNotifierWatcher");
    inline static const QString path = QStringLiteral("/StatusNotifierWatcher");
    QDBusConnection bus;
    QStringList items;
};

// One entry of an exported menu (com.canonical.dbusmenu), with its submenu.
struct MenuEntry {
    int id = 0;
    QVariantMap properties;
    std::vector<MenuEntry> children;

    QString label() const { return properties.value(QStringLiteral("label")).toString(); }
    bool separator() const { return properties.value(QStringLiteral("type")).toString() == QStringLiteral("separator"); }
    bool enabled() const { return properties.value(QStringLiteral("enabled"), true).toBool(); }
    // "checkmark", "radio" or empty.
    QString toggleType() const { return properties.value(QStringLiteral("toggle-type")).toString(); }
    bool checked() const { return properties.value(QStringLiteral("toggle-state")).toInt() == 1; }
    // The first entry of this tree with that label, or nullptr.
    const MenuEntry* find(const QString& wanted) const {
        if (label() == wanted) return this;
        for (const MenuEntry& child : children)
            if (const MenuEntry* found = child.find(wanted)) return found;
        return nullptr;
    }

    static MenuEntry read(const QDBusArgument& argument) {
        MenuEntry entry;
        argument.beginStructure();
        argument >> entry.id >> entry.properties;
        argument.beginArray();
        while (!argument.atEnd()) {
            QDBusVariant child;
            argument >> child;
            entry.children.push_back(read(child.variant().value<QDBusArgument>()));
        }
        argument.endArray();
        argument.endStructure();
        return entry;
    }
};

// A tray item as the panel sees it: its service on the bus, its properties, its menu.
class TrayItemClient {
public:
    TrayItemClient(QDBusConnection bus, QString service) : bus(std::move(bus)), service(std::move(service)) {}

    QVariant property(const QString& name) const {
        const QDBusMessage reply = call(path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                                        {itemInterface, name});
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
        return reply.arguments().first().value<QDBusVariant>().variant();
    }
    // Left click on the item.
    bool activate() const {
        return call(path, itemInterface, QStringLiteral("Activate"), {0, 0}).type() == QDBusMessage::ReplyMessage;
    }
    // The whole menu tree (GetLayout of the root).
    std::optional<MenuEntry> menu() const {
        const QDBusMessage reply = call(menuPath(), menuInterface, QStringLiteral("GetLayout"), {0, -1, QStringList()});
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2) return std::nullopt;
        return MenuEntry::read(reply.arguments().at(1).value<QDBusArgument>());
    }
    // A click on a menu entry, as a panel sends it when the user chooses it.
    bool click(int id) const {
        const QVariantList event = {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)),
                                    uint(QDateTime::currentSecsSinceEpoch())};
        return call(menuPath(), menuInterface, QStringLiteral("Event"), event).type() == QDBusMessage::ReplyMessage;
    }

private:
    inline static const QString path = QStringLiteral("/StatusNotifierItem");
    inline static const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
    inline static const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

    QDBusMessage call(const QString& object, const QString& interface, const QString& method,
                      const QVariantList& arguments) const {
        QDBusMessage message = QDBusMessage::createMethodCall(service, object, interface, method);
        message.setArguments(arguments);
        return bus.call(message, QDBus::BlockWithGui, 5000);
    }
    QString menuPath() const { return property(QStringLiteral("Menu")).value<QDBusObjectPath>().path(); }

    QDBusConnection bus;
    QString service;
};

}  // namespace quellton::test
