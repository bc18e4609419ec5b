// quellton-view: one visualization live in a window, driven by the sound the computer plays
// (or the idle signal when nothing plays). A developer's view of the live renderer.
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "AudioSpectrum.h"
#include "Canvas.h"
#include "Catalog.h"
#include "PowerProfile.h"
#include "RenderSettings.h"
#include "RenderThread.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"
#include "WindowEnvironment.h"
#include "WindowSystemGl.h"

using namespace quellton;

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    std::string id = "nation";
    RenderSettings settings;
    double seconds = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--fps" && hasValue)
            settings.fps = std::max(1, std::atoi(argv[++i]));
        else if (arg == "--quality" && hasValue)
            settings.quality = qualityFromLabel(argv[++i]).value_or(Quality::balanced);
        else if (arg == "--seconds" && hasValue)
            seconds = std::atof(argv[++i]);
        else
            id = arg;
    }
    if (!Catalog::byID(id)) {
        std::fprintf(stderr, "usage: quellton-view [ID] [--fps N] [--quality Sparsam|Ausgewogen|Maximal] [--seconds S]\n");
        return 2;
    }
    std::string error;
    if (!useWindowSystemGl(&error, true)) {
        std::fprintf(stderr, "quellton-view: %s\n", error.c_str());
        return 1;
    }
    settings.currentID = id;
    RenderState::set(settings);

    ShaderLibrary::shared().compileAll(id, [] {});
    AudioSpectrum::shared().start();
    PowerProfileWatcher power;
    RenderState::setLowPower(power.powerSaver());
    QObject::connect(&power, &PowerProfileWatcher::powerSaverChanged, &RenderState::setLowPower);

    Canvas canvas(Role::wallpaper, windowEnvironment());
    canvas.setTitle(QString::fromStdString("Quellton – " + Catalog::byID(id)->name));
    canvas.resize(960, 540);
    canvas.show();
    if (seconds > 0) QTimer::singleShot(int(seconds * 1000), &app, &QGuiApplication::quit);
    const int status = app.exec();
    canvas.destroy();  // the render thread lets go of the surface while the connection still serves it
    std::fprintf(stderr, "quellton-view: %ld Bilder gezeichnet\n", canvas.framesDrawn());
    AudioSpectrum::shared().stop();
    RenderThread::stopShared();
    ShaderLibrary::shared().stopBackgroundWork();
    return status;
}
