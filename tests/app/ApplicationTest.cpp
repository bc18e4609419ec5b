#include <signal.h>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
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

std::string nameOwner() {
    return output("dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus /org/freedesktop/DBus "
                  "org.freedesktop.DBus.GetNameOwner string:" QUELLTON_APP_ID " 2>/dev/null");
}

bool waitForOwner() {
    for (int i = 0; i < 500; ++i) {
        if (!nameOwner().empty()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

bool capturing() { return test::shell("pactl list short source-outputs | grep -q ."); }

bool eventually(const std::function<bool()>& condition) {
    for (int i = 0; i < 500; ++i) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

TEST(Application, WithoutADisplayItSaysSoInOneLineAndFails) {
    for (const char* display : {"env -u DISPLAY -u WAYLAND_DISPLAY", "env -u WAYLAND_DISPLAY DISPLAY=:4711"}) {
        const std::string text = output(std::string(display) + " " + binary + " 2>&1; echo \"status $?\"");
        EXPECT_EQ(text, std::string(Application::noDisplayMessage) + "\nstatus 1\n") << display;
    }
    // --autostart is no command-line mode: it is the same start.
    EXPECT_EQ(output("env -u DISPLAY -u WAYLAND_DISPLAY " + binary + " --autostart 2>&1; echo \"status $?\""),
              std::string(Application::noDisplayMessage) + "\nstatus 1\n");
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

TEST_F(RunningApplication, ASecondStartHandsOverAndLeavesOneInstance) {
    QuelltonProcess first;
    ASSERT_TRUE(waitForOwner());
    const std::string owner = nameOwner();

    QuelltonProcess second;
    EXPECT_EQ(second.waitExit(), 0);
    EXPECT_EQ(kill(first.pid(), 0), 0) << "the first instance must keep running";
    EXPECT_EQ(nameOwner(), owner);

    kill(first.pid(), SIGTERM);
    EXPECT_EQ(first.waitExit(), 0);
}

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

}  // namespace
}  // namespace quellton
