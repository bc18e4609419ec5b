#include <xcb/dpms.h>
#include <xcb/screensaver.h>
#include <xcb/shape.h>

#include <QDBusConnection>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QWindow>
#include <QtGui/qguiapplication_platform.h>

#include <gtest/gtest.h>

#include "CoverageWatcher.h"
#include "DesktopTestSupport.h"
#include "DisplaySleepWatcher.h"
#include "Ewmh.h"
#include "PrivateSession.h"
#include "RawClickMonitor.h"
#include "SessionLock.h"
#include "SessionTestSupport.h"
#include "DesktopWindow.h"
#include "X11Desktop.h"
#include "X11TestClient.h"
#include "XcbHandles.h"

namespace quellton {
namespace {

using test::emitSignal;
using test::output;
using test::run;
using test::settle;
using test::waitUntil;

const QRect screenRect(0, 0, 1280, 720);

using OtherClient = test::X11Client;

TEST(X11Desktop, MarksAWindowAsTheClickThroughDesktopLayerOnEveryWorkspace) {
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    ASSERT_TRUE(x11 && x11->connection());
    x11::DesktopWindow marker(x11->connection(), xcb_setup_roots_iterator(xcb_get_setup(x11->connection())).data->root);
    QWindow window;
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowTransparentForInput | Qt::WindowStaysOnBottomHint);
    window.setGeometry(screenRect);
    window.create();
    marker.beforeMap(xcb_window_t(window.winId()));
    window.show();
    marker.afterMap(xcb_window_t(window.winId()));
    ASSERT_TRUE(waitUntil([&] { return window.isExposed(); }));

    const std::string id = std::to_string(window.winId());
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

    OtherClient other;
    const x11::Reply<xcb_shape_get_rectangles_reply_t> input(xcb_shape_get_rectangles_reply(
        other.c(), xcb_shape_get_rectangles(other.c(), xcb_window_t(window.winId()), XCB_SHAPE_SK_INPUT), nullptr));
    ASSERT_TRUE(input);
    EXPECT_EQ(input->rectangles_len, 0u) << "clicks must fall through to the desktop";
}

TEST(X11Desktop, ReportsLeftPressesAnywhereWithThePointerPosition) {
    x11::RawClickMonitor monitor;
    ASSERT_TRUE(monitor.start());
    QSignalSpy spy(&monitor, &x11::RawClickMonitor::leftButtonPressed);

    ASSERT_EQ(run("xdotool mousemove 100 200 click 1"), 0);
    ASSERT_TRUE(waitUntil([&] { return spy.count() >= 1; }));
    EXPECT_EQ(spy.at(0).at(0).toPoint(), QPoint(100, 200));

    // Right and middle clicks, wheel and keys are no clicks; a drag is one press.
    ASSERT_EQ(run("xdotool mousemove 300 400 click 3 click 2 click 4 key a"), 0);
    settle();
    EXPECT_EQ(spy.count(), 1);
    ASSERT_EQ(run("xdotool mousemove 10 20 mousedown 1"), 0);
    ASSERT_TRUE(waitUntil([&] { return spy.count() >= 2; }));
    EXPECT_EQ(spy.at(1).at(0).toPoint(), QPoint(10, 20));
    ASSERT_EQ(run("xdotool mousemove 600 500 mousemove 700 600 mouseup 1"), 0);
    settle();
    EXPECT_EQ(spy.count(), 2);
}

TEST(X11Desktop, AFullscreenWindowCoversTheScreenUntilItGoes) {
    x11::CoverageWatcher watcher;
    ASSERT_TRUE(watcher.start());
    EXPECT_FALSE(watcher.covered(screenRect));

    OtherClient other;
    const xcb_window_t small = other.window(QRect(0, 0, 1279, 720));
    other.map(small);
    settle(200);
    EXPECT_FALSE(watcher.covered(screenRect));

    const xcb_window_t full = other.window(screenRect);
    other.states(full, {x11::Atom::_NET_WM_STATE_FULLSCREEN});
    other.map(full);
    ASSERT_TRUE(waitUntil([&] { return watcher.covered(screenRect); }));

    // Minimising (the manager marks it hidden) uncovers, restoring covers again.
    other.states(full, {x11::Atom::_NET_WM_STATE_FULLSCREEN, x11::Atom::_NET_WM_STATE_HIDDEN});
    ASSERT_TRUE(waitUntil([&] { return !watcher.covered(screenRect); }));
    other.states(full, {x11::Atom::_NET_WM_STATE_FULLSCREEN});
    ASSERT_TRUE(waitUntil([&] { return watcher.covered(screenRect); }));

    other.unmap(full);
    ASSERT_TRUE(waitUntil([&] { return !watcher.covered(screenRect); }));
    other.map(full);
    ASSERT_TRUE(waitUntil([&] { return watcher.covered(screenRect); }));
    other.destroy(full);
    ASSERT_TRUE(waitUntil([&] { return !watcher.covered(screenRect); }));
    other.destroy(small);
}

TEST(X11Desktop, FollowsTheManagersClientListWorkAreaAndDesktops) {
    // The test plays the window manager: it publishes the client list, work area and desktops.
    OtherClient wm;
    const x11::Atoms& a = wm.atoms();
    const xcb_window_t maximized = wm.window(QRect(0, 32, 1280, 688));
    wm.states(maximized, {x11::Atom::_NET_WM_STATE_MAXIMIZED_VERT, x11::Atom::_NET_WM_STATE_MAXIMIZED_HORZ});
    x11::writeCardinal(wm.c(), maximized, a[x11::Atom::_NET_WM_DESKTOP], 0);
    wm.map(maximized);
    const std::uint32_t area[] = {0, 32, 1280, 688, 0, 0, 1280, 720};
    xcb_change_property(wm.c(), XCB_PROP_MODE_REPLACE, wm.root(), a[x11::Atom::_NET_WORKAREA], XCB_ATOM_CARDINAL, 32,
                        8, area);
    x11::writeCardinal(wm.c(), wm.root(), a[x11::Atom::_NET_CURRENT_DESKTOP], 0);
    xcb_change_property(wm.c(), XCB_PROP_MODE_REPLACE, wm.root(), a[x11::Atom::_NET_CLIENT_LIST], XCB_ATOM_WINDOW, 32,
                        1, &maximized);
    xcb_flush(wm.c());

    x11::CoverageWatcher watcher;
    ASSERT_TRUE(watcher.start());
    QSignalSpy changes(&watcher, &x11::CoverageWatcher::changed);
    EXPECT_TRUE(watcher.covered(screenRect));

    // On the second desktop the work area is the whole screen and the window is elsewhere.
    x11::writeCardinal(wm.c(), wm.root(), a[x11::Atom::_NET_CURRENT_DESKTOP], 1);
    xcb_flush(wm.c());
    ASSERT_TRUE(waitUntil([&] { return !watcher.covered(screenRect); }));
    EXPECT_GE(changes.count(), 1);
    x11::writeCardinal(wm.c(), wm.root(), a[x11::Atom::_NET_CURRENT_DESKTOP], 0);
    xcb_flush(wm.c());
    ASSERT_TRUE(waitUntil([&] { return watcher.covered(screenRect); }));

    // A window the manager does not list does not count.
    xcb_change_property(wm.c(), XCB_PROP_MODE_REPLACE, wm.root(), a[x11::Atom::_NET_CLIENT_LIST], XCB_ATOM_WINDOW, 32,
                        0, nullptr);
    xcb_flush(wm.c());
    ASSERT_TRUE(waitUntil([&] { return !watcher.covered(screenRect); }));

    for (x11::Atom property : {x11::Atom::_NET_CLIENT_LIST, x11::Atom::_NET_WORKAREA, x11::Atom::_NET_CURRENT_DESKTOP})
        xcb_delete_property(wm.c(), wm.root(), a[property]);
    wm.destroy(maximized);
}

TEST(X11Desktop, DisplaysSleepWhileDpmsOrTheScreenSaverBlanksThem) {
    OtherClient other;
    xcb_connection_t* c = other.c();
    // Each server offers one of the two; Xvfb has only the screen saver.
    const bool dpms = xcb_get_extension_data(c, &xcb_dpms_id)->present;
    const auto blank = [&](bool off) {
        if (dpms) {
            xcb_dpms_enable(c);
            xcb_dpms_force_level(c, off ? XCB_DPMS_DPMS_MODE_OFF : XCB_DPMS_DPMS_MODE_ON);
        } else {
            xcb_force_screen_saver(c, off ? XCB_SCREEN_SAVER_ACTIVE : XCB_SCREEN_SAVER_RESET);
        }
        xcb_flush(c);
    };
    blank(false);

    x11::DisplaySleepWatcher watcher(std::chrono::milliseconds(50));
    ASSERT_TRUE(watcher.start());
    EXPECT_FALSE(watcher.asleep());
    QSignalSpy spy(&watcher, &x11::DisplaySleepWatcher::asleepChanged);

    blank(true);
    ASSERT_TRUE(waitUntil([&] { return watcher.asleep(); }));
    blank(false);
    ASSERT_TRUE(waitUntil([&] { return !watcher.asleep(); }));
    ASSERT_EQ(spy.count(), 2);
    EXPECT_TRUE(spy.at(0).at(0).toBool());
    EXPECT_FALSE(spy.at(1).at(0).toBool());
}

TEST(SessionLock, LogindAndTheScreenSaverEachLockTheSession) {
    const SessionLockSources sources = test::privateSessionSources(QStringLiteral("/test/session"));
    SessionLock lock(sources);
    lock.start();
    QSignalSpy spy(&lock, &SessionLock::lockedChanged);
    const QString session = QStringLiteral("org.freedesktop.login1.Session");
    const QString saver = QStringLiteral("org.freedesktop.ScreenSaver");

    emitSignal(QStringLiteral("/test/session"), session, QStringLiteral("Lock"), {});
    ASSERT_TRUE(waitUntil([&] { return lock.locked(); }));
    emitSignal(QStringLiteral("/test/session"), session, QStringLiteral("Unlock"), {});
    ASSERT_TRUE(waitUntil([&] { return !lock.locked(); }));

    // Another session's signals are not ours.
    emitSignal(QStringLiteral("/test/other"), session, QStringLiteral("Lock"), {});
    settle(300);
    EXPECT_FALSE(lock.locked());

    const QVariantMap hint{{QStringLiteral("LockedHint"), true}};
    emitSignal(QStringLiteral("/test/session"), QStringLiteral("org.freedesktop.DBus.Properties"),
               QStringLiteral("PropertiesChanged"), {session, hint, QStringList()});
    ASSERT_TRUE(waitUntil([&] { return lock.locked(); }));

    // The screen saver holds the lock while logind lets go, and the other way round.
    emitSignal(QStringLiteral("/org/freedesktop/ScreenSaver"), saver, QStringLiteral("ActiveChanged"), {true});
    settle(200);
    emitSignal(QStringLiteral("/test/session"), session, QStringLiteral("Unlock"), {});
    settle(300);
    EXPECT_TRUE(lock.locked());
    emitSignal(QStringLiteral("/org/freedesktop/ScreenSaver"), saver, QStringLiteral("ActiveChanged"), {false});
    ASSERT_TRUE(waitUntil([&] { return !lock.locked(); }));
    EXPECT_EQ(spy.count(), 4);  // lock, unlock, hint, the screen saver ending
}

}  // namespace
}  // namespace quellton
