#include <xcb/shape.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

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
        controller = std::make_unique<WallpaperController>(*model, makeDesktopHost(model->settingsStore()),
                                                           std::make_unique<SessionLock>(sources));
        controller->start();
        ASSERT_EQ(controller->canvases().size(), 1u);
        canvas = controller->canvases().front();
        ASSERT_TRUE(waitUntil([&] { return canvas->isExposed(); }));
    }

    bool hidden() const { return canvas->inputs().copy().hidden; }
    double clickedAt() const { return canvas->inputs().copy().clickedAt; }

    QTemporaryDir dir;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<WallpaperController> controller;
    Canvas* canvas = nullptr;
};

TEST_F(WallpaperControllerTest, PutsAClickThroughDesktopLayerWindowOnTheScreenOnEveryWorkspace) {
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_EQ(canvas->geometry(), screen);
    EXPECT_EQ(canvas->role(), Role::wallpaper);
    ASSERT_EQ(controller->layout().size(), 1u);
    EXPECT_EQ(controller->layout().front(), (RectF{0, 0, double(screen.width()), double(screen.height())}));
    EXPECT_FALSE(hidden());

    const std::string id = std::to_string(canvas->winId());
    const std::string props = output("xprop -id " + id + " _NET_WM_WINDOW_TYPE _NET_WM_STATE _NET_WM_DESKTOP");
    EXPECT_NE(props.find("_NET_WM_WINDOW_TYPE(ATOM) = _NET_WM_WINDOW_TYPE_DESKTOP"), std::string::npos) << props;
    for (const char* state : {"_NET_WM_STATE_BELOW", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                              "_NET_WM_STATE_SKIP_PAGER"})
        EXPECT_NE(props.find(state), std::string::npos) << state << " missing in " << props;
    EXPECT_NE(props.find("_NET_WM_DESKTOP(CARDINAL) = 4294967295"), std::string::npos) << props;
    // Never focused: no WM_TAKE_FOCUS (the toolkit offers it) and the input hint false.
    const std::string focus = output("xprop -id " + id + " WM_PROTOCOLS WM_HINTS");
    EXPECT_EQ(focus.find("WM_TAKE_FOCUS"), std::string::npos) << focus;
    EXPECT_NE(focus.find("WM_DELETE_WINDOW"), std::string::npos) << focus;
    EXPECT_NE(focus.find("Client accepts input or input focus: False"), std::string::npos) << focus;
    const std::string info = output("xwininfo -id " + id);
    EXPECT_NE(info.find("Width: 1280"), std::string::npos) << info;
    EXPECT_NE(info.find("Height: 720"), std::string::npos) << info;

    x11::Connection other = x11::openConnection();
    const x11::Reply<xcb_shape_get_rectangles_reply_t> input(xcb_shape_get_rectangles_reply(
        other.get(), xcb_shape_get_rectangles(other.get(), xcb_window_t(canvas->winId()), XCB_SHAPE_SK_INPUT), nullptr));
    ASSERT_TRUE(input);
    EXPECT_EQ(input->rectangles_len, 0u) << "clicks must fall through to the desktop";
}

TEST_F(WallpaperControllerTest, SleepingDisplaysHideAndWakingWhileTheSessionIsLockedStaysHidden) {
    // Xvfb's blanking screen saver stands in for sleeping displays.
    // One connection, so the server sees the requests in order: the last one wins.
    x11::Connection connection = x11::openConnection();
    const auto blank = [&connection](bool on) {
        xcb_force_screen_saver(connection.get(), on ? XCB_SCREEN_SAVER_ACTIVE : XCB_SCREEN_SAVER_RESET);
        std::free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    };
    // Held on until seen: the watcher reads the state only every two seconds.
    const auto sleepAndWake = [&] {
        ASSERT_TRUE(waitUntil([&] {
            blank(true);
            return controller->screensAsleep();
        }, 10000));
        EXPECT_TRUE(hidden());
        blank(false);
        ASSERT_TRUE(waitUntil([&] { return !controller->screensAsleep(); }));
        settle(200);
    };
    ASSERT_NO_FATAL_FAILURE(sleepAndWake());
    EXPECT_FALSE(hidden());

    const QString session = QStringLiteral("org.freedesktop.login1.Session");
    emitSignal(sessionPath, session, QStringLiteral("Lock"), {});
    ASSERT_TRUE(waitUntil([&] { return controller->locked(); }));
    ASSERT_NO_FATAL_FAILURE(sleepAndWake());
    EXPECT_TRUE(hidden());
    emitSignal(sessionPath, session, QStringLiteral("Unlock"), {});
    ASSERT_TRUE(waitUntil([&] { return !hidden(); }));
}

TEST_F(WallpaperControllerTest, ALeftPressRipplesThePictureUnderThePointerAndNothingElseDoes) {
    const double before = clickedAt();
    ASSERT_EQ(run("xdotool mousemove 640 360 click 1"), 0);
    ASSERT_TRUE(waitUntil([&] { return clickedAt() != before; }));
    const Inputs afterLeft = canvas->inputs().copy();
    EXPECT_GT(afterLeft.clickedAt, before);
    EXPECT_LE(afterLeft.clickedAt, hostTimeNow());
    // The centre of the screen is the origin of the p-coordinates.
    EXPECT_NEAR(afterLeft.click[0], 0.0, 0.01);
    EXPECT_NEAR(afterLeft.click[1], 0.0, 0.01);

    ASSERT_EQ(run("xdotool mousemove 0 719 click 1"), 0);
    ASSERT_TRUE(waitUntil([&] { return clickedAt() != afterLeft.clickedAt; }));
    const Inputs corner = canvas->inputs().copy();
    // Bottom left: x = -aspect, y = -1.
    EXPECT_NEAR(corner.click[0], -1280.0 / 720.0, 0.01);
    EXPECT_NEAR(corner.click[1], -1.0, 0.01);

    // Right and middle clicks, the wheel and keys are no clicks.
    ASSERT_EQ(run("xdotool mousemove 300 300 click 3 click 2 click 4 key a"), 0);
    settle();
    EXPECT_EQ(clickedAt(), corner.clickedAt);
    // A drag ripples once, where it began.
    ASSERT_EQ(run("xdotool mousemove 10 20 mousedown 1"), 0);
    ASSERT_TRUE(waitUntil([&] { return clickedAt() != corner.clickedAt; }));
    const Inputs pressed = canvas->inputs().copy();
    EXPECT_NEAR(pressed.click[0], (2.0 * 10 - 1280) / 720, 0.01);
    EXPECT_NEAR(pressed.click[1], (720 - 2.0 * 20) / 720, 0.01);
    ASSERT_EQ(run("xdotool mousemove 600 500 mousemove 700 600 mouseup 1"), 0);
    settle();
    EXPECT_EQ(clickedAt(), pressed.clickedAt);
}

}  // namespace
}  // namespace quellton
