#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace quellton {
class SettingsStore;
}

namespace quellton::plasma {

// The user's own Plasma wallpapers (plugin and its settings, per desktop) as they were before our
// plugin took their place, kept in our settings until they are given back: a crash in between
// loses nothing, and the next start gives back the same.
class SavedWallpapers {
public:
    explicit SavedWallpapers(std::shared_ptr<SettingsStore> settings);

    // The saved JSON array; none when nothing is kept or the record is damaged.
    std::optional<QByteArray> saved() const;
    // Keeps `wallpapers` unless a record is already kept (then those are still the user's own);
    // a desktop already showing `ours` is kept as Plasma's default image wallpaper.
    void keepFirst(const QByteArray& wallpapers, const QString& ours);
    void forget();

private:
    std::shared_ptr<SettingsStore> settings_;
};

}  // namespace quellton::plasma
