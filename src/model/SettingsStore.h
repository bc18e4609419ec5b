#pragma once

#include <QRect>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <functional>
#include <string>

#include "SystemLog.h"

namespace quellton {

// A setting of our file with its type and the value it reads as when missing or damaged;
// `name` is "key" in [General] or "Group/key".
template <typename T>
struct SettingKey {
    QString name;
    T fallback{};
};

// The defaults store: an INI file read through QSettings with a table of registered defaults.
// A missing key reads as its registered default; a value of the wrong type (or one that a
// hand-edited or damaged file turned into something else) reads the same way.
// Without a registered default the reads give "", an empty list, false or 0.
//
// A file that exists but cannot be read is never written: assignments then live only for this
// session, so nothing in it is lost. Such a file, a write that fails and lines that cannot be
// parsed each give one line in the log.
class SettingsStore {
public:
    using Log = std::function<void(const std::string& line)>;

    explicit SettingsStore(const QString& filePath, Log log = systemLog);

    // ~/.config/Quellton/Quellton.conf (honouring XDG_CONFIG_HOME).
    static QString standardPath();

    void registerDefaults(const QVariantMap& defaults);

    QString string(const QString& key) const;
    QStringList stringArray(const QString& key) const;
    bool boolean(const QString& key) const;
    double real(const QString& key) const;
    int integer(const QString& key) const;

    // Every write reaches the file at once, so a crash loses no setting.
    void set(const QString& key, const QVariant& value);
    void remove(const QString& key);
    // The keys of one group, without the group's name.
    QStringList childKeys(const QString& group) const;

    // Typed keys, under the same rule as the registered ones: a missing or damaged value reads as
    // the key's fallback.
    QString get(const SettingKey<QString>& key) const;
    bool get(const SettingKey<bool>& key) const;
    int get(const SettingKey<int>& key) const;
    QRect get(const SettingKey<QRect>& key) const;
    template <typename T>
    void set(const SettingKey<T>& key, const T& value) { set(key.name, QVariant::fromValue(value)); }

private:
    template <typename Convert>
    auto read(const QString& key, Convert convert) const;
    template <typename T, typename Convert>
    T read(const SettingKey<T>& key, Convert convert) const;
    void save();
    void report(const char* what);

    QSettings settings;  // writes only
    QVariantMap values;  // what the file holds, with this session's assignments
    QVariantMap registered;
    Log log;
    bool unreadable = false;  // then nothing is written
    bool reportedWrite = false;
    bool reportedFormat = false;
};

}  // namespace quellton
