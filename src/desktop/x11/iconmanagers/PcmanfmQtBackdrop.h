#pragma once

#include <QDBusConnection>

#include "ManagerBackdrop.h"

namespace quellton {

// pcmanfm-qt (LXQt) keeps its backdrop in the settings file of its profile and obeys wallpaper
// changes over its session-bus interface. Its command line offers no way back to a backdrop of
// colour alone, so the key is a picture of the key colour, stretched; a backdrop that is
// colour alone already (no picture) is its own key and stays as it is.
class PcmanfmQtBackdrop : public ManagerBackdrop {
public:
    explicit PcmanfmQtBackdrop(QDBusConnection bus = QDBusConnection::sessionBus());

    std::optional<QVariantMap> read() override;
    std::optional<std::uint32_t> solidColor(const QVariantMap& current) const override;
    bool key() override;
    QVariantMap keyedValues() override;
    bool restore(const QVariantMap& saved) override;

    // The profile the running desktop was started with ("default" without --profile).
    QString runningProfile() const;
    // The key picture, written on first use: $XDG_DATA_HOME/Quellton/Symbolebene-Schluessel.png
    static QString keyPicture();

private:
    bool setWallpaper(const QString& file, const QString& mode);

    QDBusConnection bus_;
};

}  // namespace quellton
