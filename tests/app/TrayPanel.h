#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>
#include <vector>

class QDBusMessage;

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
    explicit StatusNotifierWatcher(QDBusConnection bus);
    ~StatusNotifierWatcher() override;

    // Owns the watcher's name; false when another panel has it.
    bool claim();
    void release();

    QStringList registeredItems() const { return items; }
    bool hostRegistered() const { return true; }
    int protocolVersion() const { return 0; }

public slots:
    void RegisterStatusNotifierItem(const QString& service, const QDBusMessage& message);
    void RegisterStatusNotifierHost(const QString& service);

signals:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
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
    const MenuEntry* find(const QString& label) const;
};

// A tray item as the panel sees it: its service on the bus, its properties, its menu.
class TrayItemClient {
public:
    TrayItemClient(QDBusConnection bus, QString service);

    QVariant property(const QString& name) const;
    // Left click on the item.
    bool activate() const;
    // The whole menu tree (GetLayout of the root).
    std::optional<MenuEntry> menu() const;
    // A click on a menu entry, as a panel sends it when the user chooses it.
    bool click(int id) const;

private:
    QString menuPath() const;

    QDBusConnection bus;
    QString service;
    QString path;
};

}  // namespace quellton::test
