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

std::vector<Canvas*> WallpaperController::canvases() const {
    std::vector<Canvas*> result;
    for (const Record& record : windows_) result.push_back(record.canvas.get());
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
        if (backend_) backend_->windowClosing(*record.canvas);
        record.canvas->close();
        record.canvas.reset();
    }
    windows_.clear();
}

void WallpaperController::rebuild() {
    if (stopped_) return;
    const QList<QScreen*> screens = QGuiApplication::screens();
    const std::vector<QScreen*> kept = keptScreens(std::vector<QScreen*>(screens.begin(), screens.end()), model_.allScreens());
    std::vector<RectF> frames;
    for (const QScreen* screen : kept) frames.push_back(globalFrame(screen->geometry()));
    if (layoutUnchanged(layout_, frames, !windows_.empty())) return;
    layout_ = frames;

    closeWindows();
    for (QScreen* screen : kept) windows_.push_back({makeWindow(screen)});
    refreshHidden();
}

std::unique_ptr<Canvas> WallpaperController::makeWindow(QScreen* screen) {
    auto canvas = std::make_unique<Canvas>(Role::wallpaper);
    canvas->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                     Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnBottomHint);
    canvas->setTitle(QStringLiteral("Quellton"));
    canvas->setScreen(screen);
    canvas->setGeometry(screen->geometry());
    canvas->create();
    backend_->prepareWindow(*canvas);
    canvas->show();
    backend_->windowShown(*canvas);
    return canvas;
}

void WallpaperController::refreshHidden() {
    for (const Record& record : windows_) {
        Canvas& canvas = *record.canvas;
        const bool covered = backend_->covered(canvas.geometry(), canvas.devicePixelRatio());
        canvas.inputs().setHidden(wallpaperHidden(screensAsleep_, locked_, covered));
    }
}

void WallpaperController::ripple(QPointF global) {
    const QPointF point = Canvas::toBottomUp(global);
    for (const Record& record : windows_) {
        if (globalFrame(record.canvas->geometry()).contains(point.x(), point.y()))
            record.canvas->inputs().rippleAtScreen(point.x(), point.y(), hostTimeNow());
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
