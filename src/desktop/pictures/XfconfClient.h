#pragma once

#include <QDBusConnection>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <optional>

namespace quellton {

// One xfconf channel through xfconfd's org.xfce.Xfconf interface on the session bus; the bus
// starts xfconfd when it is not running. Values are plain QVariants and their type is the
// xfconf type: int, uint, qlonglong, qulonglong, bool, double and QString map to xfconf's
// int, uint, int64, uint64, bool, double and string; a QVariantList is an xfconf array of
// such values (xfdesktop's rgba1 is a list of four doubles). Blocking calls with a short
// timeout, so a hanging xfconfd cannot freeze the caller for long.
class XfconfClient {
public:
    explicit XfconfClient(QString channel, QDBusConnection bus = QDBusConnection::sessionBus());

    const QString& channel() const { return channel_; }

    // Nothing when the property does not exist or xfconfd does not answer.
    std::optional<QVariant> get(const QString& property) const;
    bool exists(const QString& property) const;
    // Every property whose name starts with `base` ("/" for the whole channel), by full name.
    QVariantMap properties(const QString& base = QStringLiteral("/")) const;
    // Creates the property when it is missing; false when xfconfd refuses or does not answer.
    bool set(const QString& property, const QVariant& value);
    // Removes the property (and with `recursive` everything below it).
    bool reset(const QString& property, bool recursive = false);

private:
    QString channel_;
    QDBusConnection bus_;
};

}  // namespace quellton
