#include "DeferredPicture.h"

#include <QVariantList>

#include <vector>

#include "DesktopIconManagerSettings.h"

namespace quellton {

namespace {

const QString kindKey = QStringLiteral("kind");
const QString screensKey = QStringLiteral("screens");
const QString urlKey = QStringLiteral("url");
const QString presentationKey = QStringLiteral("presentation");

QVariantMap screenValues(const ScreenInfo& screen, const QString& file = {}) {
    return {{QStringLiteral("name"), screen.name},
            {QStringLiteral("geometry"), screen.geometry},
            {QStringLiteral("scale"), screen.scale},
            {QStringLiteral("file"), file}};
}

ScreenInfo screenOf(const QVariantMap& values) {
    return {values.value(QStringLiteral("name")).toString(), values.value(QStringLiteral("geometry")).toRect(),
            values.value(QStringLiteral("scale")).toDouble()};
}

}  // namespace

QVariantMap deferShow(std::span<const ScreenPicture> stills) {
    QVariantList screens;
    for (const ScreenPicture& still : stills) screens.append(screenValues(still.screen, still.file));
    return {{kindKey, QStringLiteral("show")}, {screensKey, screens}};
}

QVariantMap deferRestore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) {
    QVariantList list;
    for (const ScreenInfo& screen : screens) list.append(screenValues(screen));
    return {{kindKey, QStringLiteral("restore")},
            {urlKey, picture.toString()},
            {presentationKey, presentation},
            {screensKey, list}};
}

std::optional<QUrl> deferredResult(const QVariantMap& deferred) {
    if (deferred.value(kindKey) == QStringLiteral("restore")) return QUrl(deferred.value(urlKey).toString());
    const QVariantList screens = deferred.value(screensKey).toList();
    if (screens.isEmpty()) return std::nullopt;
    return QUrl::fromLocalFile(screens.front().toMap().value(QStringLiteral("file")).toString());
}

void replayDeferred(DesktopPicture& picture, const QVariantMap& deferred) {
    const QVariantList values = deferred.value(screensKey).toList();
    if (deferred.value(kindKey) == QStringLiteral("show")) {
        std::vector<ScreenPicture> stills;
        for (const QVariant& v : values)
            stills.push_back({screenOf(v.toMap()), v.toMap().value(QStringLiteral("file")).toString()});
        picture.show(stills);
    } else if (deferred.value(kindKey) == QStringLiteral("restore")) {
        std::vector<ScreenInfo> screens;
        for (const QVariant& v : values) screens.push_back(screenOf(v.toMap()));
        picture.restore(QUrl(deferred.value(urlKey).toString()), deferred.value(presentationKey).toMap(), screens);
    }
}

GuardedDesktopPicture::GuardedDesktopPicture(std::unique_ptr<DesktopPicture> inner, IconManager manager,
                                             std::shared_ptr<SettingsStore> settings)
    : inner_(std::move(inner)), manager_(manager), vault_(std::move(settings)) {}

std::optional<QUrl> GuardedDesktopPicture::current(const ScreenInfo& mainScreen) {
    const std::optional<BackdropRecord> record = vault_.record(recordName(manager_));
    if (!record) return inner_->current(mainScreen);
    if (!record->deferredPicture.isEmpty()) return deferredResult(record->deferredPicture);
    if (record->picture.isEmpty()) return std::nullopt;
    return QUrl(record->picture);
}

bool GuardedDesktopPicture::defer(const QVariantMap& change) {
    std::optional<BackdropRecord> record = vault_.record(recordName(manager_));
    if (!record) return false;
    record->deferredPicture = change;
    vault_.store(recordName(manager_), *record);
    return true;
}

void GuardedDesktopPicture::show(std::span<const ScreenPicture> stills) {
    if (!defer(deferShow(stills))) inner_->show(stills);
}

// While keyed, the desktop shows the key's style; the user's is in the record where the key replaced it.
QVariantMap GuardedDesktopPicture::presentation(std::span<const ScreenInfo> screens) {
    QVariantMap shown = inner_->presentation(screens);
    if (const std::optional<BackdropRecord> record = vault_.record(recordName(manager_)))
        for (auto it = shown.begin(); it != shown.end(); ++it)
            if (record->settings.value(it.key()).isValid()) it.value() = record->settings.value(it.key());
    return shown;
}

void GuardedDesktopPicture::restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) {
    if (!defer(deferRestore(picture, presentation, screens))) inner_->restore(picture, presentation, screens);
}

std::optional<IconManager> keyedManagerOf(PictureDesktop desktop) {
    switch (desktop) {
    case PictureDesktop::xfce: return IconManager::xfdesktop;
    case PictureDesktop::mate: return IconManager::caja;
    case PictureDesktop::lxqt: return IconManager::pcmanfmQt;
    case PictureDesktop::plasma: return IconManager::plasmashell;
    case PictureDesktop::gnome:
    case PictureDesktop::cinnamon: break;
    }
    return std::nullopt;
}

std::unique_ptr<DesktopPicture> guardDesktopPicture(std::unique_ptr<DesktopPicture> picture, PictureDesktop desktop,
                                                    std::shared_ptr<SettingsStore> settings) {
    const std::optional<IconManager> manager = keyedManagerOf(desktop);
    if (!picture || !manager) return picture;
    return std::make_unique<GuardedDesktopPicture>(std::move(picture), *manager, std::move(settings));
}

}  // namespace quellton
