#pragma once

#include <QRect>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <memory>
#include <optional>
#include <span>

namespace quellton {

// A screen as the desktop-picture sync sees it.
struct ScreenInfo {
    QString name;      // the output's connector name, e.g. "DP-1"
    QRect geometry;    // in Qt's global coordinates (device-independent pixels)
    double scale = 1;  // device pixels per device-independent pixel
};

// A still for one screen: an absolute file path.
struct ScreenPicture {
    ScreenInfo screen;
    QString file;
};

// The desktop's own picture, as the desktop stores it. Main thread. Every operation ignores
// the desktop's errors: a screen it cannot set keeps its picture.
class DesktopPicture {
public:
    virtual ~DesktopPicture() = default;

    // The picture the main screen shows now, as a file URL; nothing when it shows none.
    virtual std::optional<QUrl> current(const ScreenInfo& mainScreen) = 0;
    // One still per screen, main screen first, filling the screen and cut to fit. A desktop
    // with one picture for all screens takes the first.
    virtual void show(std::span<const ScreenPicture> stills) = 0;
    // How the desktop shows its picture now (scaling, a dark-mode variant), in the desktop's own
    // setting names, so that it can be given back with the picture.
    virtual QVariantMap presentation(std::span<const ScreenInfo> screens) = 0;
    // The same picture on every screen, shown as `presentation` says; what it leaves out stays.
    virtual void restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) = 0;
};

// The desktops that have an adapter, as XDG_CURRENT_DESKTOP names them.
enum class PictureDesktop { gnome, cinnamon, mate, xfce, plasma, lxqt };

// The first entry of the colon-separated list that has an adapter; case does not matter.
std::optional<PictureDesktop> pictureDesktop(const QString& xdgCurrentDesktop);
// The adapter of that desktop on the session bus and the session's settings.
std::unique_ptr<DesktopPicture> makeDesktopPicture(PictureDesktop desktop);

}  // namespace quellton
