#include "LxqtPicture.h"

#include <utility>

namespace quellton {

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

void LxqtPicture::restore(const QUrl& picture, std::span<const ScreenInfo>) {
    if (picture.isLocalFile()) settings_.command({QStringLiteral("--set-wallpaper"), picture.toLocalFile()});
}

}  // namespace quellton
