#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "SystemWallpaperServices.h"

namespace quellton {

class AppModel;
class SerialExecutor;

// Keeps the desktop's own picture, which the desktop shows where our live windows are not (the
// login and lock screens, overviews, screens of desktops we cannot draw behind), matching the
// running visualization: after a quiet period it renders a still for every screen, writes them
// as JPEG files into a folder of its own and hands them to the desktop. The user's picture is
// remembered before it is first replaced and put back when the option is turned off.
//
// Main thread, except the rendering and the files, which run one run at a time on a background
// thread of its own, so a run never deletes the files that an earlier one is handing over.
class SystemWallpaper {
public:
    static constexpr double quietSeconds = 1.5;
    static constexpr double stillTime = 6.3;  // seconds of the visualization's own time
    static constexpr double maxWidth = 3840, maxHeight = 2400;
    static constexpr int jpegQuality = 92;
    static inline const QString originalKey = QStringLiteral("originalWallpaper");
    // How the desktop showed that picture, as JSON in the desktop's own setting names.
    static inline const QString presentationKey = QStringLiteral("originalWallpaperPresentation");

    // The application's sync, on AppModel::shared() and the real desktop; made on first use.
    static SystemWallpaper& shared();
    // Lets a running render of the shared sync finish and drops waiting ones, before the process ends.
    static void stopShared();

    SystemWallpaper(const AppModel& model, SystemWallpaperServices services);
    ~SystemWallpaper();
    SystemWallpaper(const SystemWallpaper&) = delete;
    SystemWallpaper& operator=(const SystemWallpaper&) = delete;

    // Asks for a sync 1.5 s after the last request, while the option is on and the shaders are ready.
    void schedule();
    // Cancels a waiting sync and puts the remembered picture back on every screen.
    void restoreOriginal();

    bool pending() const { return pending_ != nullptr; }
    const QString& folder() const { return services_.folder; }

    // $XDG_DATA_HOME/Quellton/Hintergrund
    static QString standardFolder();
    // The screen's size in device pixels, each axis capped.
    static PixelSize stillSize(const ScreenInfo& screen);
    // <id>-<screen index>-<unix seconds>.jpg
    static QString fileName(const std::string& id, std::size_t screenIndex, std::int64_t seconds);

private:
    struct Run;

    void apply();
    void rememberOriginal();
    void show(const std::vector<ScreenPicture>& stills);

    const AppModel& model_;
    SystemWallpaperServices services_;
    std::unique_ptr<DelayedWork> pending_;
    bool toldNoAdapter_ = false;
    // Work handed to the queues holds this weakly and does nothing once the sync is gone.
    std::shared_ptr<SystemWallpaper*> self_;
    std::unique_ptr<SerialExecutor> worker_;
};

}  // namespace quellton
