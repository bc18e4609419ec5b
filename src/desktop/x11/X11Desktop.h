#pragma once

#include <memory>

#include "CoverageWatcher.h"
#include "DesktopHost.h"
#include "DesktopWindow.h"
#include "DisplaySleepWatcher.h"
#include "IconLayers.h"
#include "RawClickMonitor.h"

class QWindow;

namespace quellton {
class IconManagerSettings;
}

namespace quellton::x11 {

// The desktop on an X server with an EWMH window manager (or none).
class X11Desktop : public DesktopHost {
    Q_OBJECT
public:
    // `connection` is the toolkit's own connection, on which its windows live. `settings` changes
    // the icon managers' own settings while the wallpaper runs; may be null.
    X11Desktop(xcb_connection_t* connection, xcb_window_t root, std::unique_ptr<IconManagerSettings> settings,
               QObject* parent = nullptr);
    ~X11Desktop() override;

    QString name() const override;
    void start() override;
    std::vector<DesktopScreen> screens() const override { return qtScreens(); }
    // A desktop-layer Canvas window of its own on the screen.
    std::unique_ptr<WallpaperSurface> makeSurface(const DesktopScreen& screen) override;
    void stop() override;
    bool covered(const QRect& screen, double devicePixelRatio) const override;
    bool displaysAsleep() const override { return sleep_.asleep(); }

    const IconLayers& iconLayers() const { return iconLayers_; }

private:
    friend class WindowWallpaper;
    // A created window, before it is shown and once more after; and before it is closed.
    void prepareWindow(QWindow& window);
    void windowShown(QWindow& window);
    void windowClosing(QWindow& window);

    xcb_connection_t* connection_;
    std::unique_ptr<IconManagerSettings> settings_;
    DesktopWindow marker_;
    RawClickMonitor clicks_;
    DisplaySleepWatcher sleep_;
    CoverageWatcher coverage_;
    IconLayers iconLayers_;
    bool stopped_ = false;
};

// The desktop of the X server Qt runs on; none on another platform.
std::unique_ptr<DesktopHost> makeX11Desktop();

}  // namespace quellton::x11
