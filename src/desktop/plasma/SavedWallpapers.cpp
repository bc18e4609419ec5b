#include "SavedWallpapers.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "SettingsStore.h"

namespace quellton::plasma {

namespace {

// Base64, so the INI file keeps the JSON's commas and quotes as they are.
const SettingKey<QString> savedKey{QStringLiteral("PlasmaWallpaper/saved")};

std::optional<QByteArray> validArray(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray() || document.array().isEmpty()) return std::nullopt;
    return document.toJson(QJsonDocument::Compact);
}

}  // namespace

SavedWallpapers::SavedWallpapers(std::shared_ptr<SettingsStore> settings) : settings_(std::move(settings)) {}

std::optional<QByteArray> SavedWallpapers::saved() const {
    const QString text = settings_->get(savedKey);
    if (text.isEmpty()) return std::nullopt;
    return validArray(QByteArray::fromBase64(text.toLatin1()));
}

void SavedWallpapers::keepFirst(const QByteArray& wallpapers) {
    if (saved()) return;
    if (const auto valid = validArray(wallpapers)) settings_->set(savedKey, QString::fromLatin1(valid->toBase64()));
}

void SavedWallpapers::forget() { settings_->remove(savedKey.name); }

}  // namespace quellton::plasma
