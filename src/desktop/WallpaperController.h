#pragma once

#include <QObject>
#include <QPointF>
#include <QTimer>

#include <memory>
#include <vector>

#include "FrameInputs.h"

class QScreen;

namespace quellton {

class AppModel;
class Canvas;
class DesktopHost;
class SessionLock;
class WallpaperSurface;

// Puts the running visualization behind the desktop icons: one click-through desktop-layer
// surface with a wallpaper renderer on every screen (or only the primary one), hidden while the
// displays sleep, the session is locked or a window covers the screen, and a ripple for every
// left click on a screen. Main thread only; lives as long as the process once started.
class WallpaperController : public QObject {
    Q_OBJECT
public:
    // The one controller of the application, on the user's model and the real desktop.
    static WallpaperController& shared();

    // `host` may be null where the session has no desktop layer: then no picture is made.
    WallpaperController(AppModel& model, std::unique_ptr<DesktopHost> host, std::unique_ptr<SessionLock> lock,
                        QObject* parent = nullptr);
    ~WallpaperController() override;

    // Installs the observations and the click monitor, then builds the windows. Once.
    void start();
    // Closes the windows and gives back what the desktop changed for them (the icon layers'
    // backdrops); before the process ends. Once; the controller cannot start again.
    void stop();

    // What runs now, for diagnostics and tests.
    std::vector<WallpaperSurface*> surfaces() const;
    // The surfaces that are Qt windows.
    std::vector<Canvas*> canvases() const;
    const std::vector<RectF>& layout() const { return layout_; }
    bool screensAsleep() const { return screensAsleep_; }
    bool locked() const { return locked_; }

private:
    void rebuild();
    void scheduleRebuild();
    void refreshHidden();
    void ripple(QPointF global);
    void watchScreen(QScreen* screen);
    void setScreensAsleep(bool asleep);
    void setLocked(bool locked);
    void closeSurfaces();

    AppModel& model_;
    std::unique_ptr<DesktopHost> host_;
    std::unique_ptr<SessionLock> lock_;
    std::vector<std::unique_ptr<WallpaperSurface>> surfaces_;
    std::vector<RectF> layout_;
    bool screensAsleep_ = false;
    bool locked_ = false;
    bool started_ = false;
    bool stopped_ = false;
    // Screen notifications come in bursts and while Qt is still updating its list.
    QTimer rebuildSoon_;
};

}  // namespace quellton
