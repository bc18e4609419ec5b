// The wallpaper under a real window manager, drawing through OpenGL, right from its start.
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QWindow>

#include <gtest/gtest.h>

#include <iostream>
#include <thread>

#include "AppModel.h"
#include "Canvas.h"
#include "DesktopBackend.h"
#include "Ewmh.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "SessionLock.h"
#include "SessionTestSupport.h"
#include "Wallpaper.h"
#include "WindowSystemGl.h"
#include "X11TestClient.h"
#include "XcbHandles.h"

namespace quellton {
namespace {

using test::settle;
using test::waitUntil;

struct NoLoginItem : LoginItem {
    bool isRegistered() override { return false; }
    bool registerItem() override { return false; }
    bool unregisterItem() override { return false; }
};

std::unique_ptr<AppModel> makeModel(const QString& settingsFile) {
    ModelServices services;
    services.settings = std::make_unique<SettingsStore>(settingsFile);
    services.clock = std::make_shared<SystemClock>();
    services.loginItem = std::make_shared<NoLoginItem>();
    services.log = [](const std::string&) {};
    return std::make_unique<AppModel>(std::move(services));
}

xcb_window_t activeWindow() {
    x11::Connection c = x11::openConnection();
    const x11::Atoms atoms(c.get());
    const std::vector<xcb_window_t> active = x11::readWindows(
        c.get(), xcb_setup_roots_iterator(xcb_get_setup(c.get())).data->root, atoms[x11::Atom::_NET_ACTIVE_WINDOW]);
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
}

TEST(WallpaperStart, AFullscreenWindowOpenedRightAfterTheStartStopsTheDrawing) {
    QTemporaryDir dir;
    // The race was between the watcher's start and the manager's answer to the new window: try it a few times.
    for (int round = 0; round < 5; ++round) {
        auto model = makeModel(dir.filePath(QStringLiteral("Quellton.conf")));
        WallpaperController controller(*model, makeDesktopBackend(), nullptr);
        // Another program maps a window and asks for fullscreen while the wallpaper starts, as a
        // player or browser started together with it at login does.
        test::X11Client player;
        const xcb_window_t video = player.window(QRect(100, 100, 400, 300));
        player.map(video);
        std::thread request([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(3 * round));
            x11::requestStateAdd(player.c(), player.root(), video, player.atoms()[x11::Atom::_NET_WM_STATE],
                                 player.atoms()[x11::Atom::_NET_WM_STATE_FULLSCREEN]);
            xcb_flush(player.c());
        });
        controller.start();
        request.join();
        ASSERT_EQ(controller.canvases().size(), 1u);
        Canvas& canvas = *controller.canvases().front();
        ASSERT_TRUE(waitUntil([&] { return canvas.inputs().copy().hidden; })) << "round " << round;
        settle(300);
        const long frames = canvas.framesDrawn();
        settle(600);
        EXPECT_EQ(canvas.framesDrawn(), frames) << "round " << round;

        player.unmap(video);
        ASSERT_TRUE(waitUntil([&] { return !canvas.inputs().copy().hidden; })) << "round " << round;
        ASSERT_TRUE(waitUntil([&] { return canvas.framesDrawn() > frames + 2; })) << "round " << round;
        EXPECT_NE(activeWindow(), xcb_window_t(canvas.winId()));
        controller.stop();
    }
}

}  // namespace
}  // namespace quellton

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PrivateSession session;
    if (!session.ready()) {
        std::cerr << "Xvfb or dbus-daemon did not start" << std::endl;
        return 1;
    }
    const pid_t manager = quellton::test::spawn({"openbox"});
    QGuiApplication app(argc, argv);
    quellton::test::waitUntil([] { return quellton::test::run("xprop -root _NET_SUPPORTING_WM_CHECK | grep -q window") == 0; });
    std::string error;
    if (!quellton::useWindowSystemGl(&error)) {
        std::cerr << "no OpenGL on the X server: " << error << std::endl;
        return 1;
    }
    const int status = RUN_ALL_TESTS();
    quellton::test::terminate(manager);
    return status;
}
