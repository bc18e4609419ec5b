#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>
#include <thread>

#include "PulseTestServer.h"
#include "AppDelegate.h"
#include "Application.h"
#include "PrivateSession.h"

extern char** environ;

namespace quellton {
namespace {

using test::output;

const std::string binary = QUELLTON_BINARY;

pid_t start(const std::vector<std::string>& extra = {}) {
    std::vector<std::string> argv{binary};
    argv.insert(argv.end(), extra.begin(), extra.end());
    return test::spawn(argv);
}

// The exit status, or nothing when the process did not end in time.
std::optional<int> waitExit(pid_t pid, std::chrono::seconds limit = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        int status = 0;
        if (waitpid(pid, &status, WNOHANG) == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return std::nullopt;
}

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
    static void SetUpTestSuite() {
        pulse = new test::PulseTestServer;  // before the X server: it clears DISPLAY
        session = new test::PrivateSession;
    }
    static void TearDownTestSuite() {
        delete session;
        delete pulse;
    }
    void SetUp() override {
        ASSERT_TRUE(pulse->ready());
        ASSERT_TRUE(session->ready());
    }
    static inline test::PulseTestServer* pulse = nullptr;
    static inline test::PrivateSession* session = nullptr;
};

TEST_F(RunningApplication, ASecondStartHandsOverAndLeavesOneInstance) {
    const pid_t first = start();
    ASSERT_TRUE(waitForOwner());
    const std::string owner = nameOwner();

    const pid_t second = start();
    EXPECT_EQ(waitExit(second), 0);
    EXPECT_EQ(kill(first, 0), 0) << "the first instance must keep running";
    EXPECT_EQ(nameOwner(), owner);

    kill(first, SIGTERM);
    EXPECT_EQ(waitExit(first), 0);
}

TEST_F(RunningApplication, QuitsCleanlyOnTerminationSignals) {
    for (int number : {SIGTERM, SIGINT}) {
        const pid_t app = start({"--autostart"});
        ASSERT_TRUE(waitForOwner());
        // The capture stream exists while the application runs.
        EXPECT_TRUE(eventually([] { return capturing(); }));
        kill(app, number);
        EXPECT_EQ(waitExit(app), 0) << "signal " << number;
        EXPECT_TRUE(nameOwner().empty());
        EXPECT_FALSE(capturing());
    }
}

// Through the program's own main loop: the sound server goes away and comes back, and so does capture.
TEST_F(RunningApplication, CaptureComesBackAfterTheSoundServerRestarts) {
    const pid_t app = start({"--autostart"});
    ASSERT_TRUE(waitForOwner());
    ASSERT_TRUE(eventually([] { return capturing(); }));
    pulse->kill();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    ASSERT_TRUE(pulse->restart());
    EXPECT_TRUE(eventually([] { return capturing(); }));
    EXPECT_EQ(kill(app, 0), 0) << "the program must keep running";
    kill(app, SIGTERM);
    EXPECT_EQ(waitExit(app), 0);
    EXPECT_FALSE(capturing());
}

}  // namespace
}  // namespace quellton
