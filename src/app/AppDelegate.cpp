#include "AppDelegate.h"

#include <QGuiApplication>
#include <QMetaObject>
#include <QWindow>

#include <algorithm>
#include <fstream>

#include "AppIcons.h"
#include "Application.h"
#include "AppModel.h"
#include "AudioSpectrum.h"
#include "GalleryWindowFactory.h"
#include "QuitKey.h"
#include "TrayItem.h"
#include "Wallpaper.h"

namespace quellton {

namespace {

constexpr double loginWindowSeconds = 180;

}  // namespace

AppDelegate::AppDelegate(bool launchedAtLogin, QObject* parent)
    : QObject(parent), launchedAtLogin_(launchedAtLogin) {}

AppDelegate::~AppDelegate() {
    // The window hides as it is destroyed; that is no closing by the user.
    if (gallery) gallery->disconnect(this);
}

void AppDelegate::didFinishLaunching() {
    AppModel::shared().start();
    QGuiApplication::setWindowIcon(applicationIcon());
    tray = std::make_unique<TrayItem>(AppModel::shared(), [this] { showGallery(); });
    // A failed set-up leaves capture off without a message; the gallery shows the status.
    AudioSpectrum::shared().start();
    WallpaperController::shared().start();
    if (!launchedAtLogin_) showGallery();
}

void AppDelegate::reopen() { showGallery(); }

void AppDelegate::showGallery() {
    if (!gallery) {
        gallery = makeGalleryWindow();
        connect(gallery.get(), &QWindow::visibleChanged, this, [this](bool visible) {
            if (!visible) windowWillClose();
        });
        quitOnKey(*gallery);
    }
    presentGalleryWindow(*gallery);
}

void AppDelegate::windowWillClose() { AppModel::shared().setHoverID(std::nullopt); }

void AppDelegate::willTerminate() {
    // Before the event loop's end: the desktop gets back what it lent us while it still answers.
    Application::stopProcessWide();
}

bool AppDelegate::launchedAtLogin(std::span<const std::string> args, std::optional<double> uptimeSeconds) {
    if (std::ranges::find(args, std::string("--autostart")) != args.end()) return true;
    return uptimeSeconds && *uptimeSeconds < loginWindowSeconds;
}

std::optional<double> AppDelegate::systemUptime() {
    std::ifstream file("/proc/uptime");
    double seconds = 0;
    if (file >> seconds) return seconds;
    return std::nullopt;
}

}  // namespace quellton
