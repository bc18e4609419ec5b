#include "SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cmath>
#include <limits>
#include <optional>
#include <utility>

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

std::optional<QRect> toRect(const QVariant& v) {
    if (v.typeId() != QMetaType::QRect || !v.toRect().isValid()) return std::nullopt;
    return v.toRect();
}

// Qt's INI reader and writer disagree about damaged files (an empty or broken section header
// hides keys that the next save brings back, or the other way round). The values are read from a
// copy that Qt has saved once, so they are exactly what a save of another setting keeps.
QVariantMap valuesAsSaved(const QString& file) {
    QVariantMap values;
    const QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("saved.conf"));
    if (!dir.isValid() || !QFile::copy(file, copy)) return values;
    const QString marker = QStringLiteral("quellton-saved");
    {
        QSettings saving(copy, QSettings::IniFormat);
        saving.setValue(marker, true);
    }
    // Qt keeps a parsed file per path in the process: read the saved one under a new name.
    const QString savedCopy = dir.filePath(QStringLiteral("read.conf"));
    if (!QFile::rename(copy, savedCopy)) return values;
    const QSettings saved(savedCopy, QSettings::IniFormat);
    for (const QString& key : saved.allKeys())
        if (key != marker) values.insert(key, saved.value(key));
    return values;
}

}  // namespace

SettingsStore::SettingsStore(const QString& filePath, Log log)
    : settings(filePath, QSettings::IniFormat), log(std::move(log)) {
    // Asked of the file itself: QSettings reports a failed write with the same status.
    if (QFile probe(filePath); probe.exists() && !probe.open(QIODevice::ReadOnly)) {
        unreadable = true;
        report("kann nicht gelesen werden; es gelten die Standardwerte, und Änderungen werden nicht gespeichert");
        return;
    }
    if (settings.status() == QSettings::FormatError) {
        reportedFormat = true;
        report("enthält unlesbare Zeilen; sie werden beim nächsten Speichern verworfen");
    }
    if (QFileInfo::exists(filePath)) values = valuesAsSaved(filePath);
}

void SettingsStore::report(const char* what) {
    if (log) log("Quellton: " + settings.fileName().toStdString() + " " + what + ".");
}

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
    if (auto it = values.find(key); it != values.end())
        if (auto value = convert(*it)) return *value;
    if (auto it = registered.find(key); it != registered.end())
        if (auto value = convert(*it)) return *value;
    return T{};
}

template <typename T, typename Convert>
T SettingsStore::read(const SettingKey<T>& key, Convert convert) const {
    if (auto it = values.find(key.name); it != values.end())
        if (auto value = convert(*it)) return *value;
    return key.fallback;
}

QString SettingsStore::get(const SettingKey<QString>& key) const { return read(key, toString); }
bool SettingsStore::get(const SettingKey<bool>& key) const { return read(key, toBoolean); }
int SettingsStore::get(const SettingKey<int>& key) const { return read(key, toInteger); }
QRect SettingsStore::get(const SettingKey<QRect>& key) const { return read(key, toRect); }

QStringList SettingsStore::childKeys(const QString& group) const {
    const QString prefix = group + u'/';
    QStringList keys;
    for (auto it = values.begin(); it != values.end(); ++it)
        if (it.key().startsWith(prefix) && !it.key().sliced(prefix.size()).contains(u'/'))
            keys.append(it.key().sliced(prefix.size()));
    return keys;
}

QString SettingsStore::string(const QString& key) const { return read(key, toString); }

QStringList SettingsStore::stringArray(const QString& key) const { return read(key, toStringArray); }

bool SettingsStore::boolean(const QString& key) const { return read(key, toBoolean); }
double SettingsStore::real(const QString& key) const { return read(key, toReal); }
int SettingsStore::integer(const QString& key) const { return read(key, toInteger); }

void SettingsStore::set(const QString& key, const QVariant& value) {
    // QSettings would write an empty list as @Invalid(), which reads back like a damaged value.
    const bool emptyList = value.typeId() == QMetaType::QStringList && value.toStringList().isEmpty();
    values.insert(key, value);
    if (unreadable) return;
    settings.setValue(key, emptyList ? QVariant(QString()) : value);
    save();
}

void SettingsStore::remove(const QString& key) {
    values.remove(key);
    if (unreadable) return;
    settings.remove(key);
    save();
}

void SettingsStore::save() {
    settings.sync();
    // The status keeps the first error, so each kind is reported once.
    if (settings.status() == QSettings::AccessError && !std::exchange(reportedWrite, true))
        report("kann nicht geschrieben werden; Änderungen gelten nur bis zum Beenden");
    else if (settings.status() == QSettings::FormatError && !std::exchange(reportedFormat, true))
        report("enthielt unlesbare Zeilen; sie wurden verworfen");
}

}  // namespace quellton
