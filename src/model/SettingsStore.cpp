#include "SettingsStore.h"

#include <QDir>
#include <QStandardPaths>

#include <cmath>
#include <limits>
#include <optional>

namespace quellton {

namespace {

// A fresh QSettings gives INI values as strings; values written in this process keep their type.
std::optional<QString> toString(const QVariant& v) {
    if (v.typeId() == QMetaType::QString) return v.toString();
    return std::nullopt;
}

std::optional<QStringList> toStringArray(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::QStringList: return v.toStringList();
    case QMetaType::QString:  // INI writes a one-element list as a plain string, an empty one as ""
        return v.toString().isEmpty() ? QStringList{} : QStringList{v.toString()};
    default: return std::nullopt;
    }
}

std::optional<bool> toBoolean(const QVariant& v) {
    if (v.typeId() == QMetaType::Bool) return v.toBool();
    if (v.typeId() != QMetaType::QString) return std::nullopt;
    const QString s = v.toString().trimmed().toLower();
    if (s == u"true" || s == u"1") return true;
    if (s == u"false" || s == u"0") return false;
    return std::nullopt;
}

std::optional<double> toReal(const QVariant& v) {
    bool ok = false;
    double d = 0;
    switch (v.typeId()) {
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::LongLong: d = v.toDouble(&ok); break;
    case QMetaType::QString: d = v.toString().trimmed().toDouble(&ok); break;
    default: return std::nullopt;
    }
    if (!ok || !std::isfinite(d)) return std::nullopt;
    return d;
}

std::optional<int> toInteger(const QVariant& v) {
    bool ok = false;
    int i = 0;
    switch (v.typeId()) {
    case QMetaType::Int: return v.toInt();
    case QMetaType::LongLong:
    case QMetaType::QString: i = v.toString().trimmed().toInt(&ok); break;
    default: return std::nullopt;
    }
    if (!ok) return std::nullopt;
    return i;
}

}  // namespace

SettingsStore::SettingsStore(const QString& filePath) : settings(filePath, QSettings::IniFormat) {}

QString SettingsStore::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Quellton/Quellton.conf");
}

void SettingsStore::registerDefaults(const QVariantMap& defaults) {
    for (auto it = defaults.begin(); it != defaults.end(); ++it) registered.insert(it.key(), it.value());
}

template <typename Convert>
auto SettingsStore::read(const QString& key, Convert convert) const {
    using T = typename decltype(convert(QVariant()))::value_type;
    if (settings.contains(key))
        if (auto value = convert(settings.value(key))) return *value;
    if (auto it = registered.find(key); it != registered.end())
        if (auto value = convert(*it)) return *value;
    return T{};
}

QString SettingsStore::string(const QString& key) const { return read(key, toString); }

QStringList SettingsStore::stringArray(const QString& key) const { return read(key, toStringArray); }

bool SettingsStore::boolean(const QString& key) const { return read(key, toBoolean); }
double SettingsStore::real(const QString& key) const { return read(key, toReal); }
int SettingsStore::integer(const QString& key) const { return read(key, toInteger); }

void SettingsStore::set(const QString& key, const QVariant& value) {
    // QSettings would write an empty list as @Invalid(), which reads back like a damaged value.
    const bool emptyList = value.typeId() == QMetaType::QStringList && value.toStringList().isEmpty();
    settings.setValue(key, emptyList ? QVariant(QString()) : value);
    settings.sync();
}

}  // namespace quellton
