#include "Application.h"

#include <QApplication>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "AppDelegate.h"
#include "AppModel.h"
#include "AudioSpectrum.h"
#include "DisplayLoss.h"
#include "GraphicalSession.h"
#include "ModelServices.h"
#include "PowerProfile.h"
#include "ProcessEnd.h"
#include "QuitSignals.h"
#include "RenderSettings.h"
#include "RenderThread.h"
#include "ShaderLibrary.h"
#include "ShellHandOver.h"
#include "SingleInstance.h"
#include "Wallpaper.h"
#include "WindowSystemGl.h"

// The process-wide instances, made here in this order, stopped at quit in the order on the right,
// never destroyed (ProcessWide.h):
//
//   made  instance              owns                                              stopped
//   1     ShaderLibrary         GL share group on our display connection,        6  compile workers
//                               compile workers
//   2     RenderThread          the thread that draws every canvas               5
//   3     AudioSpectrum         capture (PulseAudio mainloop thread), analysis   1
//   4     AppModel              settings, selection, Mix, thumbnails             -  (saves as it changes)
//   5     SystemWallpaper       the desktop-picture sync's worker                2  before the controller, so a
//                                                                                   still it hands over comes
//                                                                                   with the user's backdrop
//   6     WallpaperController   the desktop host and its surfaces                3  gives the desktop back
//
// Stopping runs on the main thread as the event loop quits (AppDelegate::willTerminate); ProcessEnd
// ends the process within quitDeadline whatever a thread is stuck in, and at once when a library
// calls exit() meanwhile.

namespace quellton::Application {

namespace {

constexpr std::chrono::seconds quitDeadline{4};

// Work posted from capture threads runs on the thread of the application object.
void runOnMainThread(std::function<void()> work) {
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(work), Qt::QueuedConnection);
}

void makeProcessWide() {
    ShaderLibrary::shared();
    RenderThread::shared();
    AudioSpectrumOptions options;
    options.mainThread = runOnMainThread;
    AudioSpectrum::setSharedOptions(std::move(options));
    AudioSpectrum::shared();
    sharedModelHooks().scheduleWallpaper = [] { SystemWallpaper::shared().schedule(); };
    sharedModelHooks().restoreWallpaper = [] { SystemWallpaper::shared().restoreOriginal(); };
    AppModel::shared();
    SystemWallpaper::shared();
    WallpaperController::shared();
}

}  // namespace

void stopProcessWide() {
    AudioSpectrum::shared().stop();
    SystemWallpaper::stopShared();
    WallpaperController::shared().stop();
    RenderThread::stopShared();
    ShaderLibrary::shared().stopBackgroundWork();
}

int run(int& argc, char** argv, std::span<const std::string> args) {
    const std::optional<int> fromShell = ShellHandOver::takeShellConnection(args);
    if (fromShell) return *fromShell;
    bool gnomeShell = false;
    switch (windowSystemFromShell() ? DisplayServer::wayland : chooseDisplayServer()) {
    case DisplayServer::none:
        std::cerr << noDisplayMessage << std::endl;
        return 1;
    case DisplayServer::waylandWithoutBackground:
        gnomeShell = isGnomeShell(std::getenv("XDG_CURRENT_DESKTOP"));
        if (!gnomeShell) {
            std::cerr << noBackgroundLayerMessage() << std::endl;
            return 1;
        }
        setenv("QT_QPA_PLATFORM", "wayland", 0);
        break;
    case DisplayServer::x11:
    case DisplayServer::wayland: break;
    }

    ProcessEnd end;
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quellton"));
    QApplication::setDesktopFileName(QStringLiteral(QUELLTON_APP_ID));
    // Only the tray item and the wallpapers exist most of the time; closing the gallery must not quit.
    QApplication::setQuitOnLastWindowClosed(false);
    end.guardExit();
    endProcessOnDisplayLoss();

    if (gnomeShell && !SingleInstance::running()) {
        // The wallpaper runs from the Shell extension, and the one instance with it.
        if (const std::optional<int> status = ShellHandOver::handOverToShell()) return *status;
    }
    SingleInstance instance;
    const bool claimed = windowSystemFromShell()
                             ? ShellHandOver::claimWhileHandedOver([&instance] { return instance.claim(); })
                             : instance.claim();
    if (!claimed) {
        if (!SingleInstance::activateRunning()) qWarning("Quellton: Die laufende Instanz antwortet nicht.");
        return 0;
    }

    std::string error;
    if (!useWindowSystemGl(&error)) {
        std::cerr << "Quellton: Auf diesem Bildschirm gibt es kein OpenGL 3.3 (" << error << ")." << std::endl;
        return 1;
    }
    PowerProfileWatcher powerProfile;
    RenderState::setLowPower(powerProfile.powerSaver());
    QObject::connect(&powerProfile, &PowerProfileWatcher::powerSaverChanged, &RenderState::setLowPower);
    makeProcessWide();

    QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &app, &QCoreApplication::quit);

    AppDelegate delegate(AppDelegate::launchedAtLogin(args, AppDelegate::systemUptime()));
    QObject::connect(&instance, &SingleInstance::activated, &delegate, &AppDelegate::reopen);
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &app, [&end] { end.startDeadline(quitDeadline); });
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &delegate, &AppDelegate::willTerminate);
    delegate.didFinishLaunching();
    return app.exec();
}

}  // namespace quellton::Application
