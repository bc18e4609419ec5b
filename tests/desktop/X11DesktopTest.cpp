#include <QSignalSpy>

#include <gtest/gtest.h>

#include "CoverageWatcher.h"
#include "DesktopTestSupport.h"
#include "Ewmh.h"
#include "PrivateSession.h"
#include "SessionIdle.h"
#include "SessionLock.h"
#include "SessionTestSupport.h"
#include "X11TestClient.h"

namespace quellton {
namespace {

using test::emitSignal;
using test::settle;
using test::waitUntil;

const QRect screenRect(0, 0, 1280, 720);

TEST(X11Desktop, AFullscreenWindowCoversTheScreenUntilItGoes) {
    x11::CoverageWatcher watcher;
    ASSERT_TRUE(watcher.start());
    EXPECT_FALSE(watcher.covered(screenRect));

    test::X11Client other;
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
    test::X11Client wm;
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

const QString loginSession = QStringLiteral("org.freedesktop.login1.Session");

// logind's session announcing a changed property, as PropertiesChanged does.
void sessionProperty(const QString& path, const QString& name, bool value) {
    emitSignal(path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
               {loginSession, QVariantMap{{name, value}}, QStringList()});
}

TEST(SessionLock, LogindAndTheScreenSaverEachLockTheSession) {
    const SessionLockSources sources = test::privateSessionSources(QStringLiteral("/test/session"));
    SessionLock lock(sources);
    lock.start();
    QSignalSpy spy(&lock, &SessionLock::lockedChanged);
    const QString saver = QStringLiteral("org.freedesktop.ScreenSaver");

    emitSignal(QStringLiteral("/test/session"), loginSession, QStringLiteral("Lock"), {});
    ASSERT_TRUE(waitUntil([&] { return lock.locked(); }));
    emitSignal(QStringLiteral("/test/session"), loginSession, QStringLiteral("Unlock"), {});
    ASSERT_TRUE(waitUntil([&] { return !lock.locked(); }));

    // Another session's signals are not ours.
    emitSignal(QStringLiteral("/test/other"), loginSession, QStringLiteral("Lock"), {});
    settle(300);
    EXPECT_FALSE(lock.locked());

    sessionProperty(QStringLiteral("/test/session"), QStringLiteral("LockedHint"), true);
    ASSERT_TRUE(waitUntil([&] { return lock.locked(); }));

    // The screen saver holds the lock while logind lets go, and the other way round.
    emitSignal(QStringLiteral("/org/freedesktop/ScreenSaver"), saver, QStringLiteral("ActiveChanged"), {true});
    settle(200);
    emitSignal(QStringLiteral("/test/session"), loginSession, QStringLiteral("Unlock"), {});
    settle(300);
    EXPECT_TRUE(lock.locked());
    emitSignal(QStringLiteral("/org/freedesktop/ScreenSaver"), saver, QStringLiteral("ActiveChanged"), {false});
    ASSERT_TRUE(waitUntil([&] { return !lock.locked(); }));
    EXPECT_EQ(spy.count(), 4);  // lock, unlock, hint, the screen saver ending
}

TEST(SessionIdle, FollowsTheIdleHintOfItsOwnSession) {
    SessionIdle idle(test::privateSessionSources(QStringLiteral("/test/idle")));
    idle.start();
    sessionProperty(QStringLiteral("/test/idle"), QStringLiteral("IdleHint"), true);
    ASSERT_TRUE(waitUntil([&] { return idle.idle(); }));
    sessionProperty(QStringLiteral("/test/other"), QStringLiteral("IdleHint"), false);
    settle(300);
    EXPECT_TRUE(idle.idle()) << "another session's hint";
    // A change of another property leaves the hint alone.
    sessionProperty(QStringLiteral("/test/idle"), QStringLiteral("LockedHint"), false);
    settle(300);
    EXPECT_TRUE(idle.idle());
    sessionProperty(QStringLiteral("/test/idle"), QStringLiteral("IdleHint"), false);
    ASSERT_TRUE(waitUntil([&] { return !idle.idle(); }));
}

}  // namespace
}  // namespace quellton
