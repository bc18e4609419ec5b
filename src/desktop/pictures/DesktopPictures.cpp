#include <array>
#include <utility>

#include "DesktopPicture.h"
#include "GSettingsPicture.h"
#include "LxqtPicture.h"
#include "PlasmaPicture.h"
#include "XfcePicture.h"

namespace quellton {

std::optional<PictureDesktop> pictureDesktop(const QString& xdgCurrentDesktop) {
    static const std::array<std::pair<QLatin1String, PictureDesktop>, 10> names{{
        {QLatin1String("GNOME"), PictureDesktop::gnome},
        {QLatin1String("Unity"), PictureDesktop::gnome},
        {QLatin1String("Budgie"), PictureDesktop::gnome},
        {QLatin1String("Pantheon"), PictureDesktop::gnome},
        {QLatin1String("X-Cinnamon"), PictureDesktop::cinnamon},
        {QLatin1String("Cinnamon"), PictureDesktop::cinnamon},
        {QLatin1String("MATE"), PictureDesktop::mate},
        {QLatin1String("XFCE"), PictureDesktop::xfce},
        {QLatin1String("KDE"), PictureDesktop::plasma},
        {QLatin1String("LXQt"), PictureDesktop::lxqt},
    }};
    for (const QString& entry : xdgCurrentDesktop.split(u':', Qt::SkipEmptyParts))
        for (const auto& [name, desktop] : names)
            if (entry.trimmed().compare(name, Qt::CaseInsensitive) == 0) return desktop;
    return std::nullopt;
}

std::unique_ptr<DesktopPicture> makeDesktopPicture(PictureDesktop desktop) {
    switch (desktop) {
    case PictureDesktop::gnome: return std::make_unique<GSettingsPicture>(GSettingsPicture::gnome);
    case PictureDesktop::cinnamon: return std::make_unique<GSettingsPicture>(GSettingsPicture::cinnamon);
    case PictureDesktop::mate: return std::make_unique<GSettingsPicture>(GSettingsPicture::mate);
    case PictureDesktop::xfce: return std::make_unique<XfcePicture>();
    case PictureDesktop::plasma: return std::make_unique<PlasmaPicture>();
    case PictureDesktop::lxqt: return std::make_unique<LxqtPicture>();
    }
    return nullptr;
}

}  // namespace quellton
