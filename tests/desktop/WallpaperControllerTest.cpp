#include <QDBusConnection>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QWindow>

#include <gtest/gtest.h>

#include <cstdlib>

#include <cmath>

#include "AppModel.h"
#include "Canvas.h"
#include "DesktopHosts.h"
#include "DesktopTestSupport.h"
#include "PrivateSession.h"
#include "SessionLock.h"
#include "SessionTestSupport.h"
#include "TestModel.h"
#include "Wallpaper.h"
#include "XcbHandles.h"

namespace quellton {
namespace {

using test::emitSignal;
using test::output;
using test::run;
using test::settle;
using test::waitUntil;

const QString sessionPath = QStringLiteral("/test/session");

// The controller on a model with a private settings file, the real X11 desktop of the test's
// Xvfb, and lock signals from the private session bus.
class WallpaperControllerTest : public ::testing::Test {
protected:
    void SetUp() override {
        model = test::makeTestModel(dir.filePath(QStringLiteral("Quellton.conf")));

        const SessionLockSources sources = test::privateSessionSources(sessionPath);
        controller = std::make_unique<WallpaperController>(*model, makeDesktopHost(),
                                                           std::make_unique<SessionLock>(sources));
        controller->start();
        ASSERT_EQ(controller->canvases().size(), 1u);
        canvas = controller->canvases().front();
        ASSERT_TRUE(waitUntil([&] { return canvas->isExposed(); }));
    }

    bool hidden() const { return canvas->inputs().copy().hidden; }

    QTemporaryDir dir;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<WallpaperController> controller;
    Canvas* canvas = nullptr;
};

TEST_F(WallpaperControllerTest, PutsADesktopLayerWindowOnTheScreen) {
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_EQ(canvas->geometry(), screen);
    EXPECT_EQ(canvas->role(), Role::wallpaper);
    ASSERT_EQ(controller->layout().size(), 1u);
    EXPECT_EQ(controller->layout().front(), (RectF{0, 0, double(screen.width()), double(screen.height())}));

    const std::string props = output("xprop -id " + std::to_string(canvas->winId()) + " _NET_WM_WINDOW_TYPE _NET_WM_STATE");
    EXPECT_NE(props.find("_NET_WM_WINDOW_TYPE_DESKTOP"), std::string::npos) << props;
    EXPECT_NE(props.find("_NET_WM_STATE_BELOW"), std::string::npos) << props;
    EXPECT_NE(props.find("_NET_WM_STATE_SKIP_TASKBAR"), std::string::npos) << props;
    EXPECT_FALSE(hidden());
}

TEST_F(WallpaperControllerTest, SwitchingAllScreensWithOneScreenKeepsTheWindow) {
    model->setAllScreens(false);
    ASSERT_EQ(controller->canvases().size(), 1u);
    EXPECT_EQ(controller->canvases().front(), canvas);
    model->setAllScreens(true);
    EXPECT_EQ(controller->canvases().front(), canvas);
}

TEST_F(WallpaperControllerTest, LockAndUnlockHideAndResume) {
    const QString session = QStringLiteral("org.freedesktop.login1.Session");
    emitSignal(sessionPath, session, QStringLiteral("Lock"), {});
    ASSERT_TRUE(waitUntil([&] { return hidden(); }));
    EXPECT_TRUE(controller->locked());
    emitSignal(sessionPath, session, QStringLiteral("Unlock"), {});
    ASSERT_TRUE(waitUntil([&] { return !hidden(); }));

    emitSignal(QStringLiteral("/org/freedesktop/ScreenSaver"), QStringLiteral("org.freedesktop.ScreenSaver"),
               QStringLiteral("ActiveChanged"), {true});
    ASSERT_TRUE(waitUntil([&] { return hidden(); }));
    emitSignal(QStringLiteral("/org/freedesktop/ScreenSaver"), QStringLiteral("org.freedesktop.ScreenSaver"),
               QStringLiteral("ActiveChanged"), {false});
    ASSERT_TRUE(waitUntil([&] { return !hidden(); }));
}

TEST_F(WallpaperControllerTest, StaysHiddenAfterWakingWhileTheSessionIsLocked) {
    const QString session = QStringLiteral("org.freedesktop.login1.Session");
    emitSignal(sessionPath, session, QStringLiteral("Lock"), {});
    ASSERT_TRUE(waitUntil([&] { return controller->locked(); }));
    // Xvfb's blanking screen saver stands in for sleeping displays.
    // One connection, so the server sees the requests in order: the last one wins.
    x11::Connection connection = x11::openConnection();
    const auto blank = [&connection](bool on) {
        xcb_force_screen_saver(connection.get(), on ? XCB_SCREEN_SAVER_ACTIVE : XCB_SCREEN_SAVER_RESET);
        std::free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    };
    // Held on until seen: the watcher reads the state only every two seconds.
    ASSERT_TRUE(waitUntil([&] {
        blank(true);
        return controller->screensAsleep();
    }, 10000));
    blank(false);
    ASSERT_TRUE(waitUntil([&] { return !controller->screensAsleep(); }));
    settle(200);
    EXPECT_TRUE(hidden());
    emitSignal(sessionPath, session, QStringLiteral("Unlock"), {});
    ASSERT_TRUE(waitUntil([&] { return !hidden(); }));
}

TEST_F(WallpaperControllerTest, AFullscreenWindowHidesTheWallpaperUntilItCloses) {
    QWindow other;
    other.setTitle(QStringLiteral("Video"));
    // Without a window manager nobody resizes a fullscreen window; the test does it.
    other.setGeometry(QGuiApplication::primaryScreen()->geometry());
    other.showFullScreen();
    ASSERT_TRUE(waitUntil([&] { return hidden(); }));
    other.hide();
    ASSERT_TRUE(waitUntil([&] { return !hidden(); }));

    QWindow small;
    small.setGeometry(100, 100, 400, 300);
    small.show();
    settle(300);
    EXPECT_FALSE(hidden());
}

TEST_F(WallpaperControllerTest, ALeftClickRipplesThePictureUnderThePointer) {
    const double before = canvas->inputs().copy().clickedAt;
    ASSERT_EQ(run("xdotool mousemove 640 360 click 1"), 0);
    ASSERT_TRUE(waitUntil([&] { return canvas->inputs().copy().clickedAt != before; }));
    const Inputs afterLeft = canvas->inputs().copy();
    EXPECT_GT(afterLeft.clickedAt, before);
    EXPECT_LE(afterLeft.clickedAt, hostTimeNow());
    // The centre of the screen is the origin of the p-coordinates.
    EXPECT_NEAR(afterLeft.click[0], 0.0, 0.01);
    EXPECT_NEAR(afterLeft.click[1], 0.0, 0.01);

    ASSERT_EQ(run("xdotool mousemove 0 719 click 1"), 0);
    ASSERT_TRUE(waitUntil([&] { return canvas->inputs().copy().clickedAt != afterLeft.clickedAt; }));
    const Inputs corner = canvas->inputs().copy();
    // Bottom left: x = -aspect, y = -1.
    EXPECT_NEAR(corner.click[0], -1280.0 / 720.0, 0.01);
    EXPECT_NEAR(corner.click[1], -1.0, 0.01);

    ASSERT_EQ(run("xdotool mousemove 300 300 click 3"), 0);
    settle();
    EXPECT_EQ(canvas->inputs().copy().clickedAt, corner.clickedAt);
}

}  // namespace
}  // namespace quellton
