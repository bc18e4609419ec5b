// Monitors coming, going and moving under the wallpaper: RandR monitors on a private Xvfb, which
// Qt's xcb platform reports as screens, with the real X11 desktop back end and live canvases.
#include <QDebug>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>

#include "AppModel.h"
#include "Canvas.h"
#include "Catalog.h"
#include "DesktopHosts.h"
#include "PrivateSession.h"
#include "SessionLock.h"
#include "SessionTestSupport.h"
#include "TestModel.h"
#include "ShaderLibrary.h"
#include "Wallpaper.h"
#include "WindowSystemGl.h"

namespace quellton {
namespace {

using test::output;
using test::run;
using test::waitUntil;

// Top-level windows of the X server that carry the wallpaper's title.
int wallpaperWindowsOnTheServer() {
    std::istringstream lines(output("xwininfo -root -children"));
    int count = 0;
    for (std::string line; std::getline(lines, line);)
        if (line.find("\"Quellton\"") != std::string::npos) ++count;
    return count;
}

int openFileDescriptors() {
    return int(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

// Every screen has one canvas of its size, in screen order, and the X server shows no other.
bool matchesTheScreens(const WallpaperController& controller) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    const std::vector<Canvas*> canvases = controller.canvases();
    if (canvases.size() != std::size_t(screens.size())) return false;
    for (std::size_t i = 0; i < canvases.size(); ++i)
        if (canvases[i]->geometry() != screens[int(i)]->geometry() || !canvases[i]->isExposed()) return false;
    return wallpaperWindowsOnTheServer() == int(canvases.size());
}

// The state for a failure message.
std::string describe(const WallpaperController& controller) {
    QString text;
    QDebug out(&text);
    for (const QScreen* screen : QGuiApplication::screens()) out << "screen" << screen->geometry();
    for (const Canvas* canvas : controller.canvases())
        out << "canvas" << canvas->geometry() << "exposed" << canvas->isExposed();
    out << "windows on the server:" << wallpaperWindowsOnTheServer();
    return text.toStdString();
}

std::string placement(int x, int y) {
    return "1280/300x720/200+" + std::to_string(x) + "+" + std::to_string(y);
}
std::string addMonitor(int x, int y) { return "xrandr --setmonitor B " + placement(x, y) + " none"; }

class ScreenTorture : public ::testing::Test {
protected:
    void SetUp() override {
        // The first monitor takes the root's only output; the rest are outputless monitors.
        run("xrandr --delmonitor B >/dev/null 2>&1");
        if (output("xrandr --listmonitors").find(" A ") == std::string::npos) {
            ASSERT_EQ(run("xrandr --setmonitor A " + placement(0, 0) + " screen"), 0);
        }
        ASSERT_TRUE(waitUntil([] { return QGuiApplication::screens().size() == 1; }));
        model = test::makeTestModel(dir.filePath(QStringLiteral("Quellton.conf")));
        // The windows matter here, not the pictures: draw few and small ones.
        model->setFps(10);
        model->setQuality(Quality::saver);
        controller = std::make_unique<WallpaperController>(*model, makeDesktopHost(model->settingsStore()), nullptr);
        controller->start();
        ASSERT_TRUE(waitUntil([&] { return matchesTheScreens(*controller); }));
        ASSERT_TRUE(waitUntil([&] { return controller->canvases().front()->framesDrawn() > 2; }));
    }

    QTemporaryDir dir;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<WallpaperController> controller;
};

// The X server refuses to redefine a monitor in place, and Qt misses a monitor deleted and defined
// again before it looks; so a screen moves by going and coming back elsewhere, each step seen.
TEST_F(ScreenTorture, FiftyAddMoveRemoveCyclesLeaveOneWindowPerScreen) {
    const int descriptors = openFileDescriptors();
    const auto step = [&](const std::string& command, int screens, const std::string& at) {
        ASSERT_EQ(run(command), 0) << at;
        ASSERT_TRUE(waitUntil([&] {
            return QGuiApplication::screens().size() == screens && matchesTheScreens(*controller);
        })) << at << ": " << describe(*controller);
    };
    for (int cycle = 0; cycle < 50; ++cycle) {
        const std::string at = "cycle " + std::to_string(cycle);
        ASSERT_NO_FATAL_FAILURE(step(addMonitor(1280, 0), 2, at + " adding"));
        ASSERT_NO_FATAL_FAILURE(step("xrandr --delmonitor B", 1, at + " removing"));
        // Below the first screen, or beside it a little lower each cycle.
        ASSERT_NO_FATAL_FAILURE(step(cycle % 2 ? addMonitor(0, 720) : addMonitor(1280, 10 + cycle * 4), 2, at + " moving"));
        ASSERT_NO_FATAL_FAILURE(step("xrandr --delmonitor B", 1, at + " removing again"));
    }
    // The windows drew all along and still do.
    Canvas* last = controller->canvases().front();
    const long frames = last->framesDrawn();
    EXPECT_TRUE(waitUntil([&] { return last->framesDrawn() > frames; }));
    // Closed windows give back their surfaces and connections.
    EXPECT_LE(openFileDescriptors(), descriptors + 4);
    EXPECT_EQ(wallpaperWindowsOnTheServer(), 1);
}

// With the wallpaper on the primary screen only, screens elsewhere come and go without a rebuild;
// with one screen, switching the option keeps the window too.
TEST_F(ScreenTorture, WithoutAllScreensOnlyThePrimaryKeepsItsWindow) {
    Canvas* primary = controller->canvases().front();
    model->setAllScreens(false);
    ASSERT_EQ(controller->canvases().size(), 1u);
    EXPECT_EQ(controller->canvases().front(), primary);
    for (int cycle = 0; cycle < 5; ++cycle) {
        ASSERT_EQ(run(addMonitor(1280, 0)), 0);
        ASSERT_TRUE(waitUntil([] { return QGuiApplication::screens().size() == 2; }));
        test::settle(200);
        ASSERT_EQ(run("xrandr --delmonitor B"), 0);
        ASSERT_TRUE(waitUntil([] { return QGuiApplication::screens().size() == 1; }));
    }
    test::settle(200);
    ASSERT_EQ(controller->canvases().size(), 1u);
    EXPECT_EQ(controller->canvases().front(), primary);
    EXPECT_EQ(wallpaperWindowsOnTheServer(), 1);
    model->setAllScreens(true);
    EXPECT_EQ(controller->canvases().front(), primary);
}

}  // namespace
}  // namespace quellton

// One X server with room for two monitors of 1280 × 720 side by side or stacked.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PrivateSession session("2560x1440x24");
    if (!session.ready()) {
        std::cerr << "Xvfb or dbus-daemon did not start" << std::endl;
        return 1;
    }
    QGuiApplication app(argc, argv);
    std::string error;
    if (!quellton::useWindowSystemGl(&error)) {
        std::cerr << "no OpenGL on the test display: " << error << std::endl;
        return 1;
    }
    const std::vector<quellton::Visualizer> shown{*quellton::Catalog::byID("nation")};
    quellton::ShaderLibrary::shared().compileBlocking(shown);
    return RUN_ALL_TESTS();
}
