#include "DesktopIconManagerSettings.h"

#include "DeferredPicture.h"

namespace quellton {

std::optional<IconManager> keyedManagerNamed(const QString& name) {
    for (IconManager manager : {IconManager::xfdesktop, IconManager::caja, IconManager::pcmanfmQt, IconManager::plasmashell})
        if (recordName(manager) == name) return manager;
    return std::nullopt;
}

QString recordName(IconManager manager) { return QString::fromStdString(iconManagerName(manager, {})); }

QVariantMap withKey(QVariantMap values, const QVariantMap& keyed) {
    for (auto it = keyed.begin(); it != keyed.end(); ++it) values.insert(it.key(), it.value());
    return values;
}

QVariantMap userChanges(const QVariantMap& saved, const QVariantMap& current, const QVariantMap& keyed) {
    QVariantMap merged = saved;
    for (auto it = current.begin(); it != current.end(); ++it) {
        // A value other than the key's is one the user set while the key held: it is the one to give back.
        const auto key = keyed.find(it.key());
        if (key == keyed.end() || key.value() != it.value()) merged.insert(it.key(), it.value());
    }
    return merged;
}

DesktopIconManagerSettings::DesktopIconManagerSettings(IconManagerServices services)
    : services_(std::move(services)), vault_(services_.settings), nemo_(vault_, services_.windowClass) {}

void DesktopIconManagerSettings::prepare() {
    for (const QString& name : vault_.managers()) {
        const std::optional<IconManager> manager = keyedManagerNamed(name);
        if (!manager || !vault_.record(name)) {
            vault_.forget(name);
            continue;
        }
        qInfo("Quellton: %s bekommt seinen Schreibtischhintergrund zurück, den ein unerwartet beendeter Lauf "
              "noch verändert hatte.",
              qPrintable(name));
        restoreBackdrop(*manager);
    }
    if (services_.nemoMayManage && services_.nemoMayManage()) nemo_.claim();
}

std::optional<QUrl> DesktopIconManagerSettings::currentPicture(IconManager manager) {
    const std::unique_ptr<DesktopPicture> picture = services_.picture ? services_.picture(manager) : nullptr;
    const std::vector<ScreenInfo> screens = services_.screens ? services_.screens() : std::vector<ScreenInfo>();
    if (!picture || screens.empty()) return std::nullopt;
    return picture->current(screens.front());
}

std::optional<std::uint32_t> DesktopIconManagerSettings::keyBackdrop(IconManager manager) {
    const std::unique_ptr<ManagerBackdrop> backdrop = services_.backdrop ? services_.backdrop(manager) : nullptr;
    if (!backdrop) return std::nullopt;
    const QString name = recordName(manager);
    const std::optional<QVariantMap> current = backdrop->read();
    if (!current) return std::nullopt;
    // Keyed before in this run: the record holds the user's values, and what the user chose since.
    if (std::optional<BackdropRecord> record = vault_.record(name)) {
        const QVariantMap chosen = userChanges(record->settings, *current, backdrop->keyedValues());
        if (chosen == record->settings && *current == withKey(*current, backdrop->keyedValues()))
            return backdropKeyColor;
        record->settings = chosen;
        vault_.store(name, *record);
        return backdrop->key() ? std::optional(backdropKeyColor) : std::nullopt;
    }
    if (const std::optional<std::uint32_t> solid = backdrop->solidColor(*current)) return solid;
    BackdropRecord record;
    record.settings = *current;
    if (const std::optional<QUrl> picture = currentPicture(manager)) record.picture = picture->toString();
    // Saved before the first change, so no end of the process can lose the user's values.
    vault_.store(name, record);
    if (!backdrop->key()) {
        backdrop->restore(*current);
        vault_.forget(name);
        return std::nullopt;
    }
    return backdropKeyColor;
}

void DesktopIconManagerSettings::restoreBackdrop(IconManager manager) {
    const QString name = recordName(manager);
    const std::optional<BackdropRecord> record = vault_.record(name);
    if (!record) return;
    if (const std::unique_ptr<ManagerBackdrop> backdrop = services_.backdrop ? services_.backdrop(manager) : nullptr)
        backdrop->restore(record->settings);
    // What the desktop-picture sync wanted to show meanwhile comes now, over the user's settings.
    if (!record->deferredPicture.isEmpty())
        if (const std::unique_ptr<DesktopPicture> picture = services_.picture ? services_.picture(manager) : nullptr)
            replayDeferred(*picture, record->deferredPicture);
    vault_.forget(name);
}

void DesktopIconManagerSettings::finish() {
    for (const QString& name : vault_.managers())
        if (const std::optional<IconManager> manager = keyedManagerNamed(name)) restoreBackdrop(*manager);
    nemo_.release();
}

}  // namespace quellton
