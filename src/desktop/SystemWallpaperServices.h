#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Clock.h"
#include "DesktopPicture.h"
#include "ModelServices.h"
#include "Palette.h"
#include "ShaderLibrary.h"
#include "Visualizer.h"

namespace quellton {

// Waiting work on the main thread; destroying the handle cancels it.
class DelayedWork {
public:
    virtual ~DelayedWork() = default;
};

// The main thread's queue.
class MainQueue {
public:
    virtual ~MainQueue() = default;
    // Runs `work` on the main thread after `seconds`, unless the handle is destroyed first.
    virtual std::unique_ptr<DelayedWork> after(double seconds, std::function<void()> work) = 0;
    // Runs `work` on the main thread soon; callable from any thread.
    virtual void post(std::function<void()> work) = 0;
};

// Draws the stills, on the sync's background thread.
class StillRenderer {
public:
    virtual ~StillRenderer() = default;
    // Nothing when the visualization cannot be drawn.
    virtual std::optional<QImage> render(const Visualizer& v, PixelSize size, const Palette& palette) = 0;
    // Called on the same thread after each run's stills.
    virtual void finished() {}
};

// Everything the desktop-picture sync talks to.
struct SystemWallpaperServices {
    std::shared_ptr<MainQueue> mainQueue;
    // Every screen, the main one first.
    std::function<std::vector<ScreenInfo>()> screens;
    std::shared_ptr<StillRenderer> renderer;
    // Null where the desktop has no adapter: it keeps its picture.
    std::unique_ptr<DesktopPicture> picture;
    // XDG_CURRENT_DESKTOP, for the line that says a desktop keeps its picture.
    QString desktop;
    // Holds "originalWallpaper".
    std::shared_ptr<SettingsStore> settings;
    // The seconds in the file names.
    std::shared_ptr<Clock> clock;
    // Where the stills go; the sync owns everything in it.
    QString folder;
    LogSink log = systemLog;
};

// Qt's event loop, Qt's screens, the shared shader library, the adapter of XDG_CURRENT_DESKTOP,
// the user's settings file, the wall clock and $XDG_DATA_HOME/Quellton/Hintergrund.
SystemWallpaperServices defaultSystemWallpaperServices();

}  // namespace quellton
