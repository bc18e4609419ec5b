#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "BackdropVault.h"
#include "DesktopPicture.h"
#include "IconManagerSettings.h"
#include "ManagerBackdrop.h"
#include "NemoDesktopHandlers.h"

namespace quellton {

// Where the settings of the icon managers are read and written.
struct IconManagerServices {
    // Our settings file, where what was taken is kept.
    std::shared_ptr<SettingsStore> settings;
    // The manager's backdrop; null where it has none.
    std::function<std::unique_ptr<ManagerBackdrop>(IconManager)> backdrop;
    // The desktop-picture adapter of the manager's desktop; null where there is none.
    std::function<std::unique_ptr<DesktopPicture>(IconManager)> picture;
    std::function<std::vector<ScreenInfo>()> screens;
    // Our windows' class, as nemo compares it.
    QString windowClass;
    // Whether nemo-desktop manages, or may manage, the desktop; nemo's settings are left alone otherwise.
    std::function<bool()> nemoMayManage;
};

// The icon managers' settings on the session's real stores (xfconf, GSettings, pcmanfm-qt),
// with what was taken kept in our settings file until it is given back.
class DesktopIconManagerSettings : public IconManagerSettings {
public:
    explicit DesktopIconManagerSettings(IconManagerServices services);

    void prepare() override;
    std::optional<std::uint32_t> keyBackdrop(IconManager manager) override;
    void restoreBackdrop(IconManager manager) override;
    void finish() override;

private:
    std::optional<QUrl> currentPicture(IconManager manager);

    IconManagerServices services_;
    BackdropVault vault_;
    NemoDesktopHandlers nemo_;
};

// `values` with the key's values over them.
QVariantMap withKey(QVariantMap values, const QVariantMap& keyed);
// The user's values to give back, when the store holds `current` while the key should hold:
// what differs from the key was set by the user meanwhile and replaces the saved value.
QVariantMap userChanges(const QVariantMap& saved, const QVariantMap& current, const QVariantMap& keyed);

// The managers whose backdrop can be keyed, by the name their records carry.
std::optional<IconManager> keyedManagerNamed(const QString& name);
QString recordName(IconManager manager);

}  // namespace quellton
