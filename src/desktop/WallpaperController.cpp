#include "WallpaperController.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include "AppModel.h"
#include "Canvas.h"
#include "DesktopBackend.h"
#include "SessionLock.h"
#include "WallpaperRules.h"

namespace quellton {

namespace {

RectF globalFrame(const QRect& geometry) {
    return bottomUpFrame(geometry.x(), geometry.y(), geometry.width(), geometry.height(), &Canvas::toBottomUp);
}

}  // namespace

WallpaperController& WallpaperController::shared() {
    static WallpaperController* const controller =
        new WallpaperController(AppModel::shared(), makeDesktopBackend(), std::make_unique<SessionLock>());
    return *controller;
}

WallpaperController::WallpaperController(AppModel& model, std::unique_ptr<DesktopBackend> backend,
                                         std::unique_ptr<SessionLock> lock, QObject* parent)
    : QObject(parent), model_(model), backend_(std::move(backend)), lock_(std::move(lock)) {
    rebuildSoon_.setSingleShot(true);
    rebuildSoon_.setInterval(0);
    connect(&rebuildSoon_, &QTimer::timeout, this, &WallpaperController::rebuild);
}

WallpaperController::~WallpaperController() = default;

std::vector<WallpaperSurface*> WallpaperController::surfaces() const {
    std::vector<WallpaperSurface*> result;
    for (const Record& record : windows_) result.push_back(record.surface.get());
    return result;
}

std::vector<Canvas*> WallpaperController::canvases() const {
    std::vector<Canvas*> result;
    for (const Record& record : windows_)
        if (Canvas* canvas = record.surface->window()) result.push_back(canvas);
    return result;
}

void WallpaperController::start() {
    if (started_) return;
    started_ = true;
    if (!backend_) {
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

    connect(backend_.get(), &DesktopBackend::displaysAsleepChanged, this, &WallpaperController::setScreensAsleep);
    connect(backend_.get(), &DesktopBackend::coverageChanged, this, &WallpaperController::refreshHidden);
    connect(backend_.get(), &DesktopBackend::leftClick, this, &WallpaperController::ripple);
    connect(backend_.get(), &DesktopBackend::screensChanged, this, &WallpaperController::scheduleRebuild);
    if (lock_) {
        connect(lock_.get(), &SessionLock::lockedChanged, this, &WallpaperController::setLocked);
        lock_->start();
    }
    backend_->start();
    screensAsleep_ = backend_->displaysAsleep();

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
    if (!backend_) return;
    disconnect(backend_.get(), nullptr, this, nullptr);
    // The icon managers get their backdrops back while our windows still cover the desktop, so
    // the change shows as one step.
    backend_->stop();
    closeWindows();
}

void WallpaperController::closeWindows() {
    for (Record& record : windows_) {
        if (Canvas* window = record.surface->window(); window && backend_) backend_->windowClosing(*window);
        record.surface.reset();
    }
    windows_.clear();
}

void WallpaperController::rebuild() {
    if (stopped_) return;
    const std::vector<DesktopScreen> kept = keptScreens(backend_->screens(), model_.allScreens());
    std::vector<RectF> frames;
    for (const DesktopScreen& screen : kept) frames.push_back(globalFrame(screen.geometry));
    if (layoutUnchanged(layout_, frames, !windows_.empty())) return;
    layout_ = frames;

    closeWindows();
    for (const DesktopScreen& screen : kept)
        if (auto surface = backend_->makeSurface(screen)) windows_.push_back({std::move(surface)});
    refreshHidden();
}

void WallpaperController::refreshHidden() {
    for (const Record& record : windows_) {
        WallpaperSurface& surface = *record.surface;
        const bool covered = backend_->covered(surface.geometry(), surface.devicePixelRatio());
        surface.inputs().setHidden(wallpaperHidden(screensAsleep_, locked_, covered));
    }
}

void WallpaperController::ripple(QPointF global) {
    const QPointF point = Canvas::toBottomUp(global);
    for (const Record& record : windows_) {
        if (globalFrame(record.surface->geometry()).contains(point.x(), point.y()))
            record.surface->inputs().rippleAtScreen(point.x(), point.y(), hostTimeNow());
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
