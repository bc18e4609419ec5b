#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

namespace quellton {

// The defaults store: an INI file read through QSettings with a table of registered defaults.
// A missing key reads as its registered default; a value of the wrong type (or one that a
// hand-edited or damaged file turned into something else) reads the same way.
// Without a registered default the reads give "", an empty list, false or 0.
class SettingsStore {
public:
    explicit SettingsStore(const QString& filePath);

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

private:
    template <typename Convert>
    auto read(const QString& key, Convert convert) const;

    mutable QSettings settings;
    QVariantMap registered;
};

}  // namespace quellton
