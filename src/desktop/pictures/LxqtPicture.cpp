#include "LxqtPicture.h"

#include <utility>

namespace quellton {

namespace {

const QString wallpaperMode = QStringLiteral("WallpaperMode");  // as pcmanfm-qt's file names it

}  // namespace

LxqtPicture::LxqtPicture(PcmanfmQtSettings settings) : settings_(std::move(settings)) {}

std::optional<QUrl> LxqtPicture::current(const ScreenInfo&) {
    const QString file = settings_.wallpaper();
    if (file.isEmpty()) return std::nullopt;
    return QUrl::fromLocalFile(file);
}

// pcmanfm-qt 1.2 lists "zoom" on its command line but then draws no picture at all. The still
// has the screen's own size, so stretching changes nothing but on screens larger than a still.
void LxqtPicture::show(std::span<const ScreenPicture> stills) {
    if (stills.empty()) return;
    settings_.command({QStringLiteral("--set-wallpaper"), stills.front().file, QStringLiteral("--wallpaper-mode"),
                       QStringLiteral("stretch")});
}

// pcmanfm-qt 1.2 writes "none" for every mode it was given on its command line (and ignores
// all but "stretch" there): only a mode its own settings wrote can be known and given back.
QVariantMap LxqtPicture::presentation(std::span<const ScreenInfo>) {
    static const QStringList modes{QStringLiteral("color"), QStringLiteral("stretch"), QStringLiteral("fit"),
                                   QStringLiteral("center"), QStringLiteral("tile"), QStringLiteral("zoom")};
    const QString mode = settings_.wallpaperMode();
    if (!modes.contains(mode)) return {};
    return {{wallpaperMode, mode}};
}

void LxqtPicture::restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo>) {
    if (!picture.isLocalFile()) return;
    QStringList arguments{QStringLiteral("--set-wallpaper"), picture.toLocalFile()};
    const QString mode = presentation.value(wallpaperMode).toString();
    if (!mode.isEmpty()) arguments << QStringLiteral("--wallpaper-mode") << mode;
    settings_.command(arguments);
}

}  // namespace quellton
