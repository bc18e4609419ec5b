#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

namespace quellton {

// pcmanfm-qt, the file manager that draws LXQt's desktop: its settings file of one profile,
// and its command line, which a running desktop instance obeys at once.
class PcmanfmQtSettings {
public:
    // The profile LXQt's session starts the desktop with.
    static inline const QString lxqtProfile = QStringLiteral("lxqt");

    explicit PcmanfmQtSettings(QString profile = lxqtProfile);

    // $XDG_CONFIG_HOME/pcmanfm-qt/<profile>/settings.conf
    QString path() const;
    // A value of the file as it is now, e.g. ("Desktop", "Wallpaper"); an invalid QVariant when absent.
    QVariant value(const QString& group, const QString& key) const;
    // Writes into the file. A running pcmanfm-qt neither sees this nor keeps it: it writes its own
    // values back when it saves, so change a running desktop through command() instead.
    bool setValue(const QString& group, const QString& key, const QVariant& value);

    // The desktop's wallpaper file and mode as the file holds them.
    QString wallpaper() const { return value(desktopGroup, QStringLiteral("Wallpaper")).toString(); }
    QString wallpaperMode() const { return value(desktopGroup, QStringLiteral("WallpaperMode")).toString(); }

    // Starts `pcmanfm-qt --profile <profile> <arguments>` without waiting, e.g.
    // {"--set-wallpaper", file, "--wallpaper-mode", "stretch"}; false when it cannot be started.
    bool command(const QStringList& arguments) const;

    static inline const QString desktopGroup = QStringLiteral("Desktop");

private:
    QString profile_;
};

}  // namespace quellton
