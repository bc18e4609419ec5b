#pragma once

#include <QDBusConnection>

#include "DesktopPicture.h"

namespace quellton {

// KDE Plasma: plasmashell runs desktop scripts sent to org.kde.PlasmaShell.evaluateScript. Every
// desktop containment gets the image wallpaper plugin and the still of its screen, found by the
// screen's position (then by its number, then the first still). A script's print() output is
// the call's answer, which is how the picture is read back. A desktop that shows our own wallpaper
// plugin keeps it and gets the still as that plugin's fallback picture.
class PlasmaPicture : public DesktopPicture {
public:
    explicit PlasmaPicture(QDBusConnection bus = QDBusConnection::sessionBus());

    std::optional<QUrl> current(const ScreenInfo& mainScreen) override;
    void show(std::span<const ScreenPicture> stills) override;
    QVariantMap presentation(std::span<const ScreenInfo> screens) override;
    void restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) override;

private:
    // A setting of the image plugin on screen 0's desktop, as the shell prints it; empty when none.
    QString read(const QString& key);
    void evaluateLater(const QString& script);

    QDBusConnection bus_;
};

}  // namespace quellton
