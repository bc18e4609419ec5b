#include "WallpaperController.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include "AppModel.h"
#include "Canvas.h"
#include "DesktopHost.h"
#include "DesktopHosts.h"
#include "ProcessWide.h"
#include "SessionLock.h"
#include "WallpaperRules.h"

namespace quellton {

namespace {

RectF globalFrame(const QRect& geometry) {
    return bottomUpFrame(geometry.x(), geometry.y(), geometry.width(), geometry.height(), &Canvas::toBottomUp);
}

}  // namespace

WallpaperController& WallpaperController::shared() {
    return ProcessWide<WallpaperController>::instance([] {
        return std::make_unique<WallpaperController>(AppModel::shared(), makeDesktopHost(AppModel::shared().settingsStore()), std::make_unique<SessionLock>());
    });
}

WallpaperController::WallpaperController(AppModel& model, std::unique_ptr<DesktopHost> host,
                                         std::unique_ptr<SessionLock> lock, QObject* parent)
    : QObject(parent), model_(model), host_(std::move(host)), lock_(std::move(lock)) {
    rebuildSoon_.setSingleShot(true);
    rebuildSoon_.setInterval(0);
    connect(&rebuildSoon_, &QTimer::timeout, this, &WallpaperController::rebuild);
}

WallpaperController::~WallpaperController() = default;

std::vector<WallpaperSurface*> WallpaperController::surfaces() const {
    std::vector<WallpaperSurface*> result;
    for (const auto& surface : surfaces_) result.push_back(surface.get());
    return result;
}

std::vector<Canvas*> WallpaperController::canvases() const {
    std::vector<Canvas*> result;
    for (const auto& surface : surfaces_)
        if (Canvas* canvas = surface->window()) result.push_back(canvas);
    return result;
}

void WallpaperController::start() {
    if (started_) return;
    started_ = true;
    if (!host_) {
        qWarning("Quellton: Diese Sitzung erlaubt kein Bild hinter den Schreibtischsymbolen; "
                 "das Hintergrundbild bleibt aus.");
        return;
    }
    const QPointer<WallpaperController> self(this);
    model_.setOnScreensChanged([self] {
        if (self) self->rebuild();
    });

    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watchScreen(screen);
        scheduleRebuild();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &WallpaperController::scheduleRebuild);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &WallpaperController::scheduleRebuild);
    for (QScreen* screen : QGuiApplication::screens()) watchScreen(screen);

    connect(host_.get(), &DesktopHost::displaysAsleepChanged, this, &WallpaperController::setScreensAsleep);
    connect(host_.get(), &DesktopHost::coverageChanged, this, &WallpaperController::refreshHidden);
    connect(host_.get(), &DesktopHost::leftClick, this, &WallpaperController::ripple);
    connect(host_.get(), &DesktopHost::screensChanged, this, &WallpaperController::scheduleRebuild);
    if (lock_) {
        connect(lock_.get(), &SessionLock::lockedChanged, this, &WallpaperController::setLocked);
        lock_->start();
    }
    host_->start();
    screensAsleep_ = host_->displaysAsleep();

    rebuild();
}

void WallpaperController::watchScreen(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, &WallpaperController::scheduleRebuild, Qt::UniqueConnection);
}

void WallpaperController::scheduleRebuild() { rebuildSoon_.start(); }

void WallpaperController::stop() {
    if (!started_ || stopped_) return;
    stopped_ = true;
    rebuildSoon_.stop();
    model_.setOnScreensChanged(nullptr);
    if (!host_) return;
    disconnect(host_.get(), nullptr, this, nullptr);
    // The icon managers get their backdrops back while our windows still cover the desktop, so
    // the change shows as one step.
    host_->stop();
    closeSurfaces();
}

void WallpaperController::closeSurfaces() {
    surfaces_.clear();
}

void WallpaperController::rebuild() {
    if (stopped_) return;
    const std::vector<DesktopScreen> kept = keptScreens(host_->screens(), model_.allScreens());
    std::vector<RectF> frames;
    for (const DesktopScreen& screen : kept) frames.push_back(globalFrame(screen.geometry));
    if (layoutUnchanged(layout_, frames, !surfaces_.empty())) return;
    layout_ = frames;

    closeSurfaces();
    for (const DesktopScreen& screen : kept)
        if (auto surface = host_->makeSurface(screen)) surfaces_.push_back(std::move(surface));
    refreshHidden();
}

void WallpaperController::refreshHidden() {
    for (const auto& surface : surfaces_) {
        const bool covered = host_->covered(surface->geometry(), surface->devicePixelRatio());
        surface->inputs().setHidden(wallpaperHidden(screensAsleep_, locked_, covered));
    }
}

void WallpaperController::ripple(QPointF global) {
    const QPointF point = Canvas::toBottomUp(global);
    for (const auto& surface : surfaces_) {
        if (globalFrame(surface->geometry()).contains(point.x(), point.y()))
            surface->inputs().rippleAtScreen(point.x(), point.y(), hostTimeNow());
    }
}

void WallpaperController::setScreensAsleep(bool asleep) {
    screensAsleep_ = asleep;
    refreshHidden();
}

void WallpaperController::setLocked(bool locked) {
    locked_ = locked;
    refreshHidden();
}

}  // namespace quellton
