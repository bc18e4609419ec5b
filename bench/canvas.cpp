// One wallpaper canvas for a few seconds under a private X server: the render thread's CPU time per
// frame against the frame budget, and the frame-interval summaries of the frame log.
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include <dirent.h>
#include <sys/times.h>
#include <unistd.h>

#include "Canvas.h"
#include "Catalog.h"
#include "FrameStats.h"
#include "RenderSettings.h"
#include "ShaderLibrary.h"
#include "WindowSystemGl.h"
#include "PrivateSession.h"

using namespace quellton;

namespace {

// Milliseconds on a CPU of the threads with this name, from the scheduler's statistics.
double threadCpuMs(const std::string& wanted) {
    double ms = 0;
    DIR* tasks = opendir("/proc/self/task");
    while (dirent* entry = readdir(tasks)) {
        const std::string dir = std::string("/proc/self/task/") + entry->d_name;
        std::string name;
        std::getline(std::ifstream(dir + "/comm") >> std::ws, name);
        if (name != wanted) continue;
        double ns = 0;
        std::ifstream(dir + "/schedstat") >> ns;
        ms += ns / 1e6;  // threads the render thread starts inherit its name
    }
    closedir(tasks);
    return ms;
}

long processTicks() {
    tms t{};
    times(&t);
    return long(t.tms_utime + t.tms_stime);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string id = argc > 1 ? argv[1] : "halo";
    const double seconds = argc > 2 ? std::atof(argv[2]) : 6.0;
    // A private home so the frame log lands in a folder of our own.
    const auto home = std::filesystem::temp_directory_path() / ("quellton-bench-" + std::to_string(getpid()));
    setenv("XDG_STATE_HOME", (home / "state").c_str(), 1);
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);

    test::PrivateSession session("1280x720x24");
    if (!session.ready()) return 1;
    QGuiApplication app(argc, argv);
    if (!useWindowSystemGl()) return 1;
    ShaderLibrary::shared().compileBlocking(std::vector<Visualizer>{*Catalog::byID(id)});
    RenderSettings settings;
    settings.currentID = id;
    settings.frameLog = true;
    RenderState::set(settings);

    Canvas canvas(Role::wallpaper);
    canvas.setGeometry(0, 0, 640, 360);
    canvas.show();
    QTimer::singleShot(1000, [] {});  // let the first frames settle before measuring
    double renderBefore = 0;
    long processBefore = 0, framesBefore = 0;
    QTimer::singleShot(1000, [&] {
        renderBefore = threadCpuMs("Quellton.render");
        processBefore = processTicks();
        framesBefore = canvas.framesDrawn();
    });
    QTimer::singleShot(int((1 + seconds) * 1000), &app, &QGuiApplication::quit);
    app.exec();

    const long frames = canvas.framesDrawn() - framesBefore;
    const double tick = 1000.0 / double(sysconf(_SC_CLK_TCK));
    const double renderMs = (threadCpuMs("Quellton.render") - renderBefore) / double(std::max(frames, 1L));
    const double processMs = (processTicks() - processBefore) * tick / std::max(frames, 1L);
    std::printf("%s at 640 x 360 for %.0f s: %ld frames\n", id.c_str(), seconds, frames);
    std::printf("render thread CPU per frame: %.2f ms (%.2f of a 60 fps frame budget)\n", renderMs, renderMs / 16.667);
    std::printf("whole process CPU per frame: %.2f ms (%.2f of the budget; llvmpipe rasterises on its own threads)\n",
                processMs, processMs / 16.667);
    std::ifstream log(frameLogPath());
    for (std::string line; std::getline(log, line);) std::printf("frame log: %s\n", line.c_str());
    std::filesystem::remove_all(home);
    return 0;
}
