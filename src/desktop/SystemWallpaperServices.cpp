#include "SystemWallpaperServices.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include <cmath>

#include "AppModel.h"
#include "DeferredPicture.h"
#include "SystemWallpaper.h"

namespace quellton {

namespace {

class TimerWork final : public DelayedWork {
public:
    TimerWork(double seconds, std::function<void()> work) : timer_(new QTimer) {
        timer_->setSingleShot(true);
        QObject::connect(timer_, &QTimer::timeout, timer_, std::move(work));
        timer_->start(int(std::lround(seconds * 1000)));
    }
    // The work may drop its own handle while it runs: the timer goes later.
    ~TimerWork() override {
        if (!timer_) return;
        timer_->stop();
        timer_->deleteLater();
    }

private:
    QPointer<QTimer> timer_;
};

class QtMainQueue final : public MainQueue {
public:
    std::unique_ptr<DelayedWork> after(double seconds, std::function<void()> work) override {
        return std::make_unique<TimerWork>(seconds, std::move(work));
    }
    void post(std::function<void()> work) override {
        if (QCoreApplication* app = QCoreApplication::instance())
            QMetaObject::invokeMethod(app, std::move(work), Qt::QueuedConnection);
    }
};

class LibraryStills final : public StillRenderer {
public:
    std::optional<QImage> render(const Visualizer& v, PixelSize size, const Palette& palette) override {
        return ShaderLibrary::shared().snapshot(v, size, SystemWallpaper::stillTime, palette);
    }
    // The thread outlives its runs by far; its GL context need not.
    void finished() override { ShaderLibrary::shared().releaseThreadContext(); }
};

std::vector<ScreenInfo> qtScreens() {
    std::vector<ScreenInfo> screens;
    for (const QScreen* screen : QGuiApplication::screens())  // the primary screen first
        screens.push_back({screen->name(), screen->geometry(), screen->devicePixelRatio()});
    return screens;
}

}  // namespace

SystemWallpaperServices defaultSystemWallpaperServices() {
    SystemWallpaperServices services;
    services.mainQueue = std::make_shared<QtMainQueue>();
    services.screens = qtScreens;
    services.renderer = std::make_shared<LibraryStills>();
    services.desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    // Guarded: while an icon layer's backdrop holds the key colour, the sync's changes wait for it.
    if (const auto desktop = pictureDesktop(services.desktop))
        services.picture = guardDesktopPicture(makeDesktopPicture(*desktop), *desktop, AppModel::shared().settingsStore());
    services.settings = AppModel::shared().settingsStore();
    services.clock = std::make_shared<SystemClock>();
    services.folder = SystemWallpaper::standardFolder();
    return services;
}

}  // namespace quellton
