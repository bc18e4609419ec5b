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
#include "ShaderLibrary.h"
#include "VisualRenderer.h"
#include "WindowSystemGl.h"

using namespace quellton;

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    const std::string id = argc > 1 ? argv[1] : "nation";
    if (!Catalog::byID(id)) {
        std::fprintf(stderr, "usage: quellton-view [ID] [fps] [quality: Sparsam|Ausgewogen|Maximal]\n");
        return 2;
    }
    std::string error;
    if (!useWindowSystemGl(&error)) {
        std::fprintf(stderr, "quellton-view: %s\n", error.c_str());
        return 1;
    }
    RenderSettings settings;
    settings.currentID = id;
    if (argc > 2) settings.fps = std::max(1, std::atoi(argv[2]));
    if (argc > 3) settings.quality = qualityFromLabel(argv[3]).value_or(Quality::balanced);
    RenderState::set(settings);

    ShaderLibrary::shared().compileAll(id, [] {});
    AudioSpectrum::shared().start();
    PowerProfileWatcher power;

    Canvas canvas(Role::wallpaper);
    canvas.setTitle(QString::fromStdString("Quellton – " + Catalog::byID(id)->name));
    canvas.resize(960, 540);
    canvas.show();
    if (const char* seconds = std::getenv("QUELLTON_VIEW_SECONDS"))  // for scripted runs
        QTimer::singleShot(int(std::atof(seconds) * 1000), &app, &QGuiApplication::quit);
    const int status = app.exec();
    std::fprintf(stderr, "quellton-view: %ld Bilder gezeichnet\n", canvas.framesDrawn());
    AudioSpectrum::shared().stop();
    return status;
}
