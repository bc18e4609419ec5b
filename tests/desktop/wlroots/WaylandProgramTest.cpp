#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

#include "GraphicalSession.h"
#include "NestedSway.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "WaylandTestSupport.h"

namespace quellton {
namespace {

namespace fs = std::filesystem;
using test::keepShot;
using test::nonFlatShare;

bool eventually(const std::function<bool()>& condition, std::chrono::seconds limit = std::chrono::seconds(30)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

bool running(pid_t pid) { return waitpid(pid, nullptr, WNOHANG) == 0; }

std::optional<int> exitStatus(pid_t pid, std::chrono::seconds limit) {
    std::optional<int> status;
    eventually([&] {
        int raw = 0;
        if (waitpid(pid, &raw, WNOHANG) != pid) return false;
        status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
        return true;
    }, limit);
    return status;
}

// The program as a user starts it in a sway session: its own user, home and session bus; the
// user's copy of the program, and settings that keep the two cores for the compositors.
pid_t startProgram(const test::NestedSway& sway, const std::string& arguments) {
    const std::string program = sway.dir() + "/quellton";
    fs::copy_file(QUELLTON_BINARY, program, fs::copy_options::overwrite_existing);
    fs::create_directories(sway.dir() + "/home/.config/Quellton");
    const std::string settings = sway.dir() + "/home/.config/Quellton/Quellton.conf";
    if (!fs::exists(settings)) std::ofstream(settings) << "[General]\nfps=30\n";
    if (test::run("chown -R --reference=" + sway.dir() + "/home " + sway.dir() + "/home") != 0) return -1;
    const std::string environment = "XDG_RUNTIME_DIR=" + sway.dir() + "/inner-runtime WAYLAND_DISPLAY=" + sway.socket();
    return test::spawn(
        {"sh", "-c", "exec " + sway.asUser(environment) + " dbus-run-session -- " + program + " " + arguments});
}

bool pictureShows(const test::NestedSway& sway) {
    return eventually([&] { return nonFlatShare(sway.grab()) > 0.5; }, std::chrono::seconds(90));
}

TEST(WaylandProgram, PaintsEveryOutputOfASwaySessionAndOutlivesItsChanges) {
    test::NestedSway sway;
    ASSERT_TRUE(sway.ready());
    const QImage empty = sway.grab();
    keepShot(empty, "program-before");
    EXPECT_LT(nonFlatShare(empty), 0.01) << "the desktop is not sway's flat colour";

    const std::string program = sway.dir() + "/quellton";
    const pid_t pid = startProgram(sway, "--autostart");
    ASSERT_GT(pid, 0);
    // The session bus's launcher stays between us and the program, which ends on SIGTERM.
    const auto stopProgram = [&] { return test::run("pkill -TERM -f -x '" + program + " --autostart'") == 0; };
    const std::unique_ptr<void, std::function<void(void*)>> cleanup(&sway, [&](void*) {
        stopProgram();
        if (running(pid)) test::terminate(pid);
    });

    QImage picture;
    ASSERT_TRUE(eventually([&] {
        picture = sway.grab();
        return nonFlatShare(picture) > 0.5;
    }, std::chrono::seconds(90))) << "no picture on the desktop";
    keepShot(picture, "program-picture");
    EXPECT_TRUE(eventually([&] { return sway.grab() != picture; })) << "the picture stands still";

    ASSERT_TRUE(sway.command("create_output"));
    QImage both;
    ASSERT_TRUE(eventually([&] {
        both = sway.grab();
        return both.width() == 2560 && nonFlatShare(both, QRect(1280, 0, 1280, 720)) > 0.5;
    })) << "the new output got no picture";
    std::this_thread::sleep_for(std::chrono::seconds(1));
    keepShot(sway.grab(), "program-two-outputs");

    const std::string second = sway.query("get_outputs").find("\"WL-2\"") != std::string::npos ? "WL-2" : "WL-3";
    ASSERT_TRUE(sway.unplug(second));
    ASSERT_TRUE(eventually([&] { return sway.grab().width() == 1280; }));
    ASSERT_TRUE(running(pid)) << "the program did not survive an output going away";
    const QImage after = sway.grab();
    EXPECT_TRUE(eventually([&] { return sway.grab() != after; })) << "drawing stopped with the output change";

    ASSERT_TRUE(stopProgram());
    EXPECT_EQ(exitStatus(pid, std::chrono::seconds(20)), 0);
}

// sway's stock configuration starts swaybg, whose surface would lie above ours: it gives way while
// the program runs, also across a crash, and comes back as it ran when the program ends.
TEST(WaylandProgram, SwaysOwnWallpaperClientGivesWayAndComesBack) {
    std::string stockLine;
    for (std::ifstream config("/etc/sway/config"); std::getline(config, stockLine);)
        if (stockLine.starts_with("output * bg ")) break;
    ASSERT_TRUE(stockLine.starts_with("output * bg ")) << "sway's stock configuration has no background line";
    test::NestedSway sway(stockLine);
    ASSERT_TRUE(sway.ready());
    // Its arguments, without the program's name, which may come back as a full path.
    const auto swaybg = [] { return test::output("pgrep -a -x swaybg | cut -d' ' -f3-"); };
    ASSERT_TRUE(eventually([&] { return !swaybg().empty(); }));
    const std::string swaybgLine = swaybg();
    QImage wallpaper;
    ASSERT_TRUE(eventually([&] { return nonFlatShare(wallpaper = sway.grab()) > 0.5; })) << "swaybg drew nothing";

    const std::string program = sway.dir() + "/quellton";
    const auto stopProgram = [&](const char* signal) {
        return test::run("pkill -" + std::string(signal) + " -f -x '" + program + " --autostart'") == 0;
    };
    pid_t pid = startProgram(sway, "--autostart");
    const std::unique_ptr<void, std::function<void(void*)>> cleanup(&sway, [&](void*) {
        stopProgram("TERM");
        if (running(pid)) test::terminate(pid);
    });
    const auto pictureMoves = [&] {
        return eventually([&] {
            const QImage a = sway.grab();
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            return a != sway.grab() && nonFlatShare(a) > 0.5;
        }, std::chrono::seconds(90));
    };
    ASSERT_TRUE(pictureMoves()) << "the picture does not show over swaybg's";
    EXPECT_TRUE(eventually([&] { return swaybg().empty(); }));
    keepShot(sway.grab(), "program-over-swaybg");

    ASSERT_TRUE(stopProgram("KILL"));
    exitStatus(pid, std::chrono::seconds(20));
    pid = startProgram(sway, "--autostart");
    ASSERT_TRUE(pictureMoves());
    ASSERT_TRUE(stopProgram("TERM"));
    EXPECT_EQ(exitStatus(pid, std::chrono::seconds(20)), 0);
    EXPECT_TRUE(eventually([&] { return swaybg() == swaybgLine; })) << "swaybg did not come back as it ran: " << swaybg();
    EXPECT_TRUE(eventually([&] { return sway.grab() == wallpaper; })) << "the desktop is not swaybg's picture again";
    keepShot(sway.grab(), "swaybg-back");
}

// Logging out ends the compositor: the program ends within seconds, its gallery open.
TEST(WaylandProgram, EndsWithinSecondsWhenTheCompositorGoesAway) {
    test::NestedSway sway;
    ASSERT_TRUE(sway.ready());
    const std::string program = sway.dir() + "/quellton";
    const pid_t pid = startProgram(sway, "");
    ASSERT_GT(pid, 0);
    const std::unique_ptr<void, std::function<void(void*)>> cleanup(&sway, [&](void*) {
        if (running(pid)) test::terminate(pid);
    });
    ASSERT_TRUE(pictureShows(sway)) << "no picture on the desktop";
    ASSERT_TRUE(eventually([&] { return sway.query("get_tree").find(QUELLTON_APP_ID) != std::string::npos; }))
        << "no gallery window";
    std::this_thread::sleep_for(std::chrono::seconds(3));

    sway.command("exit");  // sway may end before it answers
    EXPECT_TRUE(eventually([&] { return test::run("pgrep -f '^" + program + "'") != 0; }, std::chrono::seconds(5)))
        << "the program outlived its compositor";
}

// A compositor without the background layer (and not GNOME Shell): one line saying why, and status 1.
TEST(WaylandProgram, WithoutABackgroundLayerItSaysWhyAndEnds) {
    const std::string runtime = (fs::temp_directory_path() / "quellton-weston-XXXXXX").string();
    std::string dir = runtime;
    ASSERT_TRUE(mkdtemp(dir.data()));
    fs::permissions(dir, fs::perms::owner_all);
    const pid_t weston = test::spawn({"sh", "-c", "exec env XDG_RUNTIME_DIR=" + dir +
                                                      " weston --backend=headless-backend.so --socket=weston --idle-time=0 "
                                                      ">" + dir + "/log 2>&1"});
    ASSERT_GT(weston, 0);
    ASSERT_TRUE(eventually([&] { return fs::exists(dir + "/weston"); }, std::chrono::seconds(20)));

    const auto start = [&](const std::string& desktop) {
        return test::output("env -u DISPLAY -u QT_QPA_PLATFORM -u XDG_CURRENT_DESKTOP XDG_RUNTIME_DIR=" + dir +
                            " WAYLAND_DISPLAY=weston " + desktop + " timeout 60 " QUELLTON_BINARY " 2>&1; echo \"status $?\"");
    };
    EXPECT_EQ(start(""), noBackgroundLayerMessage() + "\nstatus 1\n");

    test::terminate(weston);
    fs::remove_all(dir);
}

}  // namespace
}  // namespace quellton
