#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <thread>

#include "AppDelegate.h"
#include "Application.h"
#include "QuelltonProcess.h"
#include "SessionWithSound.h"

namespace quellton {
namespace {

using test::output;
using test::QuelltonProcess;

const std::string binary = QUELLTON_BINARY;

bool eventually(const std::function<bool()>& condition, int tries = 500) {
    for (int i = 0; i < tries; ++i) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

std::string nameOwner() {
    return output("dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus /org/freedesktop/DBus "
                  "org.freedesktop.DBus.GetNameOwner string:" QUELLTON_APP_ID " 2>/dev/null");
}

bool waitForOwner() { return eventually([] { return !nameOwner().empty(); }); }

bool capturing() { return test::shell("pactl list short source-outputs | grep -q ."); }

// QuelltonOptions starts the program without any display; here a login launch, also to a display that does not answer.
TEST(Application, WithoutADisplayItSaysSoInOneLineAndFails) {
    for (const std::string env : {"env -u DISPLAY -u WAYLAND_DISPLAY ", "env -u WAYLAND_DISPLAY DISPLAY=:4711 "})
        EXPECT_EQ(output(env + binary + " --autostart 2>&1; echo \"status $?\""),
                  std::string(Application::noDisplayMessage) + "\nstatus 1\n")
            << env;
}

TEST(Application, ALoginLaunchIsTheAutostartArgumentOrAnEarlyStart) {
    const std::vector<std::string> plain{"quellton"}, autostart{"quellton", "--autostart"};
    EXPECT_TRUE(AppDelegate::launchedAtLogin(autostart, 5000.0));
    EXPECT_TRUE(AppDelegate::launchedAtLogin(plain, 179.9));
    EXPECT_FALSE(AppDelegate::launchedAtLogin(plain, 180.0));
    EXPECT_FALSE(AppDelegate::launchedAtLogin(plain, std::nullopt));
    EXPECT_TRUE(AppDelegate::systemUptime().has_value());
}

// One private session for the running application: sound server, X server and session bus.
class RunningApplication : public ::testing::Test {
protected:
    static void SetUpTestSuite() { world = new test::SessionWithSound; }
    static void TearDownTestSuite() { delete world; }
    void SetUp() override { ASSERT_TRUE(world->ready()); }
    static inline test::SessionWithSound* world = nullptr;
};

// Further starts that hand over to the running one: Tray.WithoutATrayTheProgramRunsOnAndStartingItAgainShowsTheGallery.
TEST_F(RunningApplication, QuitsCleanlyOnTerminationSignals) {
    for (int number : {SIGTERM, SIGINT}) {
        QuelltonProcess app({"--autostart"});
        ASSERT_TRUE(waitForOwner());
        // The capture stream exists while the application runs.
        EXPECT_TRUE(eventually([] { return capturing(); }));
        kill(app.pid(), number);
        EXPECT_EQ(app.waitExit(), 0) << "signal " << number;
        EXPECT_TRUE(nameOwner().empty());
        EXPECT_FALSE(capturing());
    }
}

// Through the program's own main loop: the sound server goes away and comes back, and so does capture.
TEST_F(RunningApplication, CaptureComesBackAfterTheSoundServerRestarts) {
    QuelltonProcess app({"--autostart"});
    ASSERT_TRUE(waitForOwner());
    ASSERT_TRUE(eventually([] { return capturing(); }));
    world->pulse.kill();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    ASSERT_TRUE(world->pulse.restart());
    EXPECT_TRUE(eventually([] { return capturing(); }));
    EXPECT_EQ(kill(app.pid(), 0), 0) << "the program must keep running";
    kill(app.pid(), SIGTERM);
    EXPECT_EQ(app.waitExit(), 0);
    EXPECT_FALSE(capturing());
}

// An X server of the test's own, which it can take away from under the program.
class DisplayToLose {
public:
    DisplayToLose() {
        pid = std::stoi(output("Xvfb -displayfd 3 -nolisten tcp -screen 0 1280x720x24 +extension GLX 3>'" +
                               file.string() + "' >/dev/null 2>&1 & echo $!"));
        eventually([&] { return !display().empty() && test::shell("xdpyinfo -display " + display() + " >/dev/null 2>&1"); });
    }
    // Gone for good before the next one starts: a server still shutting down removes the socket of
    // a new one that took its number meanwhile.
    ~DisplayToLose() {
        kill(pid, SIGKILL);
        eventually([&] {
            std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
            std::string number, name, state;
            return !(stat >> number >> name >> state) || state == "Z";  // a zombie has let go of its socket
        });
        std::filesystem::remove(file);
    }
    // ":N" once the server accepts clients.
    std::string display() const {
        std::ifstream in(file);
        std::string number;
        return std::getline(in, number) && !number.empty() ? ":" + number : "";
    }

    pid_t pid = -1;

private:
    std::filesystem::path file = std::filesystem::temp_directory_path() /
                                 ("quellton-display-" + std::to_string(getpid()) + "-" + std::to_string(++made));
    static inline int made = 0;
};

// Logging out ends the display server: the program ends within seconds, its gallery open, whether
// a SIGTERM comes first, at the same moment or not at all.
TEST_F(RunningApplication, EndsWithinSecondsWhenItsDisplayServerGoesAway) {
    using namespace std::chrono_literals;
    const std::string ownDisplay = std::getenv("DISPLAY");
    for (const std::optional<std::chrono::milliseconds> terminatedBefore : {std::optional(300ms), std::optional(0ms),
                                                                            std::optional<std::chrono::milliseconds>()}) {
        std::optional<DisplayToLose> x;
        std::optional<QuelltonProcess> app;
        std::string display;
        const auto windows = [&] {
            return std::stoi("0" + output("DISPLAY=" + display + " xdotool search --onlyvisible --class quellton | wc -l"));
        };
        // Under a loaded suite a fresh server now and then refuses the program's first connection, and
        // the program ends at once: start again with a new server then.
        for (int attempt = 0; attempt < 3; ++attempt) {
            app.reset();
            x.emplace();
            display = x->display();
            ASSERT_FALSE(display.empty());
            setenv("DISPLAY", display.c_str(), 1);
            app.emplace();
            setenv("DISPLAY", ownDisplay.c_str(), 1);
            // The wallpaper and the gallery, both drawing.
            eventually([&] { return windows() >= 2 || app->waitExit(0s).has_value(); }, 3000);
            if (!app->waitExit(0s)) break;
        }
        ASSERT_GE(windows(), 2) << app->errors();
        std::this_thread::sleep_for(std::chrono::seconds(3));

        if (terminatedBefore) {
            kill(app->pid(), SIGTERM);
            std::this_thread::sleep_for(*terminatedBefore);
        }
        kill(x->pid, SIGTERM);
        EXPECT_TRUE(app->waitExit(5s).has_value())
            << (terminatedBefore ? "SIGTERM, then the display's end: " : "the display's end: ") << app->errors();
    }
}

}  // namespace
}  // namespace quellton
