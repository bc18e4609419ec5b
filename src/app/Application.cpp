#include "Application.h"

#include <QApplication>

#include <cstdlib>
#include <iostream>

#include "AppDelegate.h"
#include "GraphicalSession.h"
#include "PowerProfile.h"
#include "QuitSignals.h"
#include "RenderThread.h"
#include "ShaderLibrary.h"
#include "SingleInstance.h"
#include "WindowSystemGl.h"

namespace quellton::Application {

int run(int& argc, char** argv, std::span<const std::string> args) {
    switch (chooseDisplayServer()) {
    case DisplayServer::none:
        std::cerr << noDisplayMessage << std::endl;
        return 1;
    case DisplayServer::waylandWithoutBackground:
        std::cerr << noBackgroundLayerMessage(std::getenv("XDG_CURRENT_DESKTOP")) << std::endl;
        return 1;
    case DisplayServer::x11:
    case DisplayServer::wayland: break;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quellton"));
    QApplication::setDesktopFileName(QStringLiteral(QUELLTON_APP_ID));
    // Only the tray item and the wallpapers exist most of the time; closing the gallery must not quit.
    QApplication::setQuitOnLastWindowClosed(false);

    SingleInstance instance;
    if (!instance.claim()) {
        if (!SingleInstance::activateRunning()) qWarning("Quellton: Die laufende Instanz antwortet nicht.");
        return 0;
    }

    std::string error;
    if (!useWindowSystemGl(&error)) {
        std::cerr << "Quellton: Auf diesem Bildschirm gibt es kein OpenGL 3.3 (" << error << ")." << std::endl;
        return 1;
    }
    PowerProfileWatcher powerProfile;

    QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &app, &QCoreApplication::quit);

    AppDelegate delegate(AppDelegate::launchedAtLogin(args, AppDelegate::systemUptime()));
    QObject::connect(&instance, &SingleInstance::activated, &delegate, &AppDelegate::reopen);
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &delegate, &AppDelegate::willTerminate);
    delegate.didFinishLaunching();
    const int status = app.exec();
    RenderThread::stopShared();
    ShaderLibrary::shared().stopBackgroundWork();
    return status;
}

}  // namespace quellton::Application
