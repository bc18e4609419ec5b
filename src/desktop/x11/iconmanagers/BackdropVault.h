#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <optional>

namespace quellton {

class SettingsStore;

// What the wallpaper took from an icon manager's backdrop, kept in our own settings file from
// before the first change until it is given back, so that a run that ends without cleaning up
// (a crash, SIGKILL) loses nothing of the user's: the next start gives it back.
struct BackdropRecord {
    QVariantMap settings;        // the user's values of the settings the key replaced
    QString picture;             // the desktop picture shown before, as a URL; empty when none
    QVariantMap deferredPicture; // a change of the desktop-picture sync that waits for the backdrop to return
};

class BackdropVault {
public:
    // Kept in the groups IconLayerBackdrops and IconLayerFlags of our settings file.
    explicit BackdropVault(std::shared_ptr<SettingsStore> settings);

    QStringList managers() const;
    std::optional<BackdropRecord> record(const QString& manager) const;
    // Each write reaches the file at once.
    void store(const QString& manager, const BackdropRecord& record);
    void forget(const QString& manager);

    // Plain flags of our own beside the records (e.g. that nemo's list holds our entry because we put it there).
    bool flag(const QString& name) const;
    void setFlag(const QString& name, bool on);

private:
    std::shared_ptr<SettingsStore> settings_;
};

}  // namespace quellton
