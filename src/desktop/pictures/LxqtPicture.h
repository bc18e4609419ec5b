#pragma once

#include "DesktopPicture.h"
#include "PcmanfmQtSettings.h"

namespace quellton {

// LXQt: pcmanfm-qt draws the desktop with one picture for all screens. Its command line sets
// the picture of the running desktop; its settings file tells which one it shows.
class LxqtPicture : public DesktopPicture {
public:
    explicit LxqtPicture(PcmanfmQtSettings settings = PcmanfmQtSettings());

    std::optional<QUrl> current(const ScreenInfo& mainScreen) override;
    void show(std::span<const ScreenPicture> stills) override;
    QVariantMap presentation(std::span<const ScreenInfo> screens) override;
    void restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) override;

private:
    PcmanfmQtSettings settings_;
};

}  // namespace quellton
