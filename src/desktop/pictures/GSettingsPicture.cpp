#include "GSettingsPicture.h"

#include <utility>

#include "GSettingsClient.h"

namespace quellton {

namespace {

const QString pictureOptions = QStringLiteral("picture-options");
const QString zoom = QStringLiteral("zoom");  // scaled to fill the screen, the overhang cut off

}  // namespace

const GSettingsPicture::Keys GSettingsPicture::gnome{
    QStringLiteral("org.gnome.desktop.background"),
    {QStringLiteral("picture-uri"), QStringLiteral("picture-uri-dark")},
    {}};
const GSettingsPicture::Keys GSettingsPicture::cinnamon{
    QStringLiteral("org.cinnamon.desktop.background"), {QStringLiteral("picture-uri")}, {}};
const GSettingsPicture::Keys GSettingsPicture::mate{
    QStringLiteral("org.mate.background"), {}, QStringLiteral("picture-filename")};

GSettingsPicture::GSettingsPicture(Keys keys) : keys_(std::move(keys)) {}

std::optional<QUrl> GSettingsPicture::current(const ScreenInfo&) {
    const auto settings = GSettingsClient::open(keys_.schema);
    if (!settings) return std::nullopt;
    if (!keys_.uriKeys.isEmpty()) {
        const QString uri = settings->getString(keys_.uriKeys.front()).value_or(QString());
        if (uri.isEmpty()) return std::nullopt;
        return QUrl(uri);
    }
    const QString path = settings->getString(keys_.pathKey).value_or(QString());
    if (path.isEmpty()) return std::nullopt;
    return QUrl::fromLocalFile(path);
}

void GSettingsPicture::show(std::span<const ScreenPicture> stills) {
    if (!stills.empty()) write(QUrl::fromLocalFile(stills.front().file), true);
}

// The scaling, and GNOME's picture for the dark style, which may differ from the light one.
QVariantMap GSettingsPicture::presentation(std::span<const ScreenInfo>) {
    QVariantMap shown;
    const auto settings = GSettingsClient::open(keys_.schema);
    if (!settings) return shown;
    for (const QString& key : presentationKeys())
        if (const std::optional<QString> value = settings->getString(key)) shown.insert(key, *value);
    return shown;
}

void GSettingsPicture::restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo>) {
    write(picture, false);
    auto settings = GSettingsClient::open(keys_.schema);
    if (!settings) return;
    for (const QString& key : presentationKeys())
        if (presentation.value(key).typeId() == QMetaType::QString) settings->setString(key, presentation.value(key).toString());
    GSettingsClient::sync();
}

QStringList GSettingsPicture::presentationKeys() const { return QStringList{pictureOptions} + keys_.uriKeys.mid(1); }

void GSettingsPicture::write(const QUrl& picture, bool zoomed) {
    auto settings = GSettingsClient::open(keys_.schema);
    if (!settings) return;
    for (const QString& key : keys_.uriKeys) settings->setString(key, picture.toString(QUrl::FullyEncoded));
    if (!keys_.pathKey.isEmpty() && picture.isLocalFile()) settings->setString(keys_.pathKey, picture.toLocalFile());
    if (zoomed) settings->setString(pictureOptions, zoom);
    GSettingsClient::sync();  // dconf writes in the background; the desktop should see it now
}

}  // namespace quellton
