// The wallpaper under a real window manager, drawing through OpenGL, right from its start.
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

#include "AppModel.h"
#include "Canvas.h"
#include "DesktopHosts.h"
#include "Ewmh.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "SessionLock.h"
#include "SessionTestSupport.h"
#include "TestModel.h"
#include "Wallpaper.h"
#include "WindowSystemGl.h"
#include "X11TestClient.h"

namespace quellton {
namespace {

using test::settle;
using test::waitUntil;

// Under openbox, drawing through OpenGL on the test's X server.
class WallpaperStart : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        manager = test::spawn({"openbox"});
        ASSERT_TRUE(waitUntil([] { return test::run("xprop -root _NET_SUPPORTING_WM_CHECK | grep -q window") == 0; }));
        std::string error;
        ASSERT_TRUE(useWindowSystemGl(&error)) << error;
    }
    static void TearDownTestSuite() { test::terminate(manager); }
    static inline pid_t manager = -1;
};

TEST_F(WallpaperStart, AFullscreenWindowOpenedRightAfterTheStartStopsTheDrawing) {
    QTemporaryDir dir;
    // The race was between the watcher's start and the manager's answer to the new window: try it a few times.
    for (int round = 0; round < 5; ++round) {
        auto model = test::makeTestModel(dir.filePath(QStringLiteral("Quellton.conf")));
        WallpaperController controller(*model, makeDesktopHost(model->settingsStore()), nullptr);
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
        EXPECT_NE(player.active(), xcb_window_t(canvas.winId()));
        controller.stop();
    }
}

}  // namespace
}  // namespace quellton

