#pragma once

#include <QStringList>

#include "DesktopPicture.h"

namespace quellton {

// Desktops that keep one picture for all screens in GSettings: GNOME (and Unity, Budgie,
// Pantheon, which use GNOME's schema), Cinnamon and MATE. They differ only in the schema and in
// whether the picture is stored as a URI or as a path; all scale it with "zoom".
class GSettingsPicture : public DesktopPicture {
public:
    struct Keys {
        QString schema;
        QStringList uriKeys;  // the first is the one read back
        QString pathKey;      // used when there are no URI keys
    };

    // org.gnome.desktop.background: picture-uri and picture-uri-dark.
    static const Keys gnome;
    // org.cinnamon.desktop.background: picture-uri.
    static const Keys cinnamon;
    // org.mate.background: picture-filename.
    static const Keys mate;

    explicit GSettingsPicture(Keys keys);

    std::optional<QUrl> current(const ScreenInfo& mainScreen) override;
    void show(std::span<const ScreenPicture> stills) override;
    QVariantMap presentation(std::span<const ScreenInfo> screens) override;
    void restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) override;

private:
    // picture-options, and the URI keys after the first (GNOME's picture for the dark style).
    QStringList presentationKeys() const;
    void write(const QUrl& picture, bool zoom);

    Keys keys_;
};

}  // namespace quellton
