#include "SavedWallpapers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "SettingsStore.h"

namespace quellton::plasma {

namespace {

// Base64, so the INI file keeps the JSON's commas and quotes as they are.
const SettingKey<QString> savedKey{QStringLiteral("PlasmaWallpaper/saved")};

std::optional<QJsonArray> validArray(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray() || document.array().isEmpty())
        return std::nullopt;
    return document.array();
}

QByteArray compact(const QJsonArray& array) { return QJsonDocument(array).toJson(QJsonDocument::Compact); }

}  // namespace

SavedWallpapers::SavedWallpapers(std::shared_ptr<SettingsStore> settings) : settings_(std::move(settings)) {}

std::optional<QByteArray> SavedWallpapers::saved() const {
    const QString text = settings_->get(savedKey);
    if (text.isEmpty()) return std::nullopt;
    const auto array = validArray(QByteArray::fromBase64(text.toLatin1()));
    if (!array) return std::nullopt;
    return compact(*array);
}

void SavedWallpapers::keepFirst(const QByteArray& wallpapers, const QString& ours) {
    if (saved()) return;
    auto array = validArray(wallpapers);
    if (!array) return;
    // Ours already there (an earlier run's record got lost): Plasma's own default is given back.
    for (qsizetype i = 0; i < array->size(); ++i) {
        QJsonObject desktop = array->at(i).toObject();
        if (desktop.value(QStringLiteral("plugin")).toString() != ours) continue;
        desktop[QStringLiteral("plugin")] = QStringLiteral("org.kde.image");
        desktop[QStringLiteral("config")] = QJsonObject();
        array->replace(i, desktop);
    }
    settings_->set(savedKey, QString::fromLatin1(compact(*array).toBase64()));
}

void SavedWallpapers::forget() { settings_->remove(savedKey.name); }

}  // namespace quellton::plasma
