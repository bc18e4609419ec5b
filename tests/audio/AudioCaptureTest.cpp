#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <thread>

#include "AudioSpectrum.h"
#include "PulseTestServer.h"
#include "SpectrumAnalyzer.h"

using namespace quellton;
using namespace std::chrono_literals;

namespace {

// Stands in for the main thread: posted work runs only when the test drains it.
class TaskQueue {
public:
    void post(std::function<void()> task) {
        std::lock_guard guard(mutex_);
        tasks_.push_back(std::move(task));
    }
    void drain() {
        for (;;) {
            std::function<void()> task;
            {
                std::lock_guard guard(mutex_);
                if (tasks_.empty()) return;
                task = std::move(tasks_.front());
                tasks_.pop_front();
            }
            task();
        }
    }

private:
    std::mutex mutex_;
    std::deque<std::function<void()>> tasks_;
};

// Linux keeps the first 15 bytes of a thread name.
bool hasSpectrumThread() {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream comm(task.path() / "comm");
        std::string name;
        std::getline(comm, name);
        if (name == std::string(QUELLTON_APP_ID ".spectrum").substr(0, 15)) return true;
    }
    return false;
}

int bandOf(double hz) {
    for (int i = 0; i < 64; ++i)
        if (spectrum::band(i).lo <= hz && hz < spectrum::band(i).hi) return i;
    return -1;
}

class AudioCapture : public testing::Test {
protected:
    void SetUp() override {
        if (!server.ready()) GTEST_FAIL() << "private PulseAudio server did not start";
        tone = server.dir() + "/tone.wav";
        ASSERT_TRUE(test::shell("sox -n -r 48000 -c 2 -b 16 " + tone +
                                " synth 30 sine 440 vol 0.5 2>/dev/null"));
    }

    AudioSpectrum makeSpectrum() {
        return AudioSpectrum(
            {[this](std::function<void()> task) { mainThread.post(std::move(task)); }});
    }

    // Polls the condition, running posted main-thread work, for up to `limit`.
    bool eventually(const std::function<bool()>& condition,
                    std::chrono::milliseconds limit = 8000ms) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (std::chrono::steady_clock::now() < deadline) {
            mainThread.drain();
            if (condition()) return true;
            std::this_thread::sleep_for(20ms);
        }
        return false;
    }

    static bool hearsTone(const AudioSpectrum& s) {
        const AudioFrame f = s.frame();
        const int band = bandOf(440);
        return s.lastSignal() > 0 &&
               std::max_element(f.bands.begin(), f.bands.end()) - f.bands.begin() == band &&
               f.bands[band] > 0.5f;
    }

    test::PulseTestServer server;
    TaskQueue mainThread;
    std::string tone;
};

}  // namespace

TEST_F(AudioCapture, HearsAToneOnTheDefaultSinkAndStopsClean) {
    AudioSpectrum spectrum = makeSpectrum();
    ASSERT_TRUE(spectrum.start());
    EXPECT_TRUE(spectrum.isRunning());
    EXPECT_EQ(spectrum.capturedSink(), "one");
    EXPECT_TRUE(hasSpectrumThread());
    const double before = wallClockNow();
    server.play(tone, "one");
    EXPECT_TRUE(eventually([&] { return hearsTone(spectrum); }));
    EXPECT_GE(spectrum.lastSignal(), before);

    spectrum.stop();
    EXPECT_FALSE(spectrum.isRunning());
    EXPECT_EQ(spectrum.published().frame, AudioFrame::silent());
    EXPECT_EQ(spectrum.lastSignal(), 0);
    // Nothing arrives after a stop, and a second stop does nothing.
    std::this_thread::sleep_for(100ms);
    spectrum.stop();
    EXPECT_EQ(spectrum.frame(), AudioFrame::silent());
    EXPECT_EQ(spectrum.setUpCount(), 1u);
    EXPECT_FALSE(hasSpectrumThread());
}

TEST_F(AudioCapture, ChangingTheDefaultSinkRestartsOnceOnTheNewSink) {
    AudioSpectrum spectrum = makeSpectrum();
    ASSERT_TRUE(spectrum.start());
    ASSERT_EQ(spectrum.capturedSink(), "one");

    ASSERT_TRUE(server.pactl("set-default-sink two"));
    EXPECT_TRUE(eventually([&] { return spectrum.setUpCount() == 2; }));
    EXPECT_TRUE(spectrum.isRunning());
    EXPECT_EQ(spectrum.capturedSink(), "two");

    server.play(tone, "two");
    EXPECT_TRUE(eventually([&] { return hearsTone(spectrum); }));
    // Exactly one restart for one change.
    eventually([] { return false; }, 500ms);
    EXPECT_EQ(spectrum.setUpCount(), 2u);

    ASSERT_TRUE(server.pactl("set-default-sink one"));
    EXPECT_TRUE(eventually([&] { return spectrum.capturedSink() == "one"; }));
    EXPECT_EQ(spectrum.setUpCount(), 3u);

    // After a stop, a change of the default sink does nothing.
    spectrum.stop();
    ASSERT_TRUE(server.pactl("set-default-sink two"));
    eventually([] { return false; }, 300ms);
    EXPECT_FALSE(spectrum.isRunning());
    EXPECT_EQ(spectrum.setUpCount(), 3u);
}

TEST_F(AudioCapture, ADyingServerLeavesTheProgramRunning) {
    AudioSpectrum spectrum = makeSpectrum();
    ASSERT_TRUE(spectrum.start());
    server.kill();
    std::this_thread::sleep_for(200ms);
    mainThread.drain();
    spectrum.stop();
    EXPECT_FALSE(spectrum.isRunning());
    // With the server gone a new start fails silently.
    EXPECT_FALSE(spectrum.start());
    EXPECT_TRUE(spectrum.lastError().has_value());
    EXPECT_EQ(spectrum.frame(), AudioFrame::silent());
}

TEST(AudioCaptureWithoutServer, StaysOffWithAnError) {
    // A socket that nothing listens on; never the user's own server.
    setenv("PULSE_SERVER", "unix:/nonexistent/quellton-test/native", 1);
    AudioSpectrum spectrum({[](std::function<void()> task) { task(); }});
    EXPECT_FALSE(spectrum.start());
    EXPECT_FALSE(spectrum.isRunning());
    ASSERT_TRUE(spectrum.lastError().has_value());
    EXPECT_NE(spectrum.lastError()->status, 0);
    EXPECT_EQ(spectrum.capturedSink(), "");
    EXPECT_EQ(spectrum.published().lastSignal, 0);
    EXPECT_EQ(spectrum.frame(), AudioFrame::silent());
    spectrum.stop();
    EXPECT_EQ(spectrum.setUpCount(), 0u);
}

TEST_F(AudioCapture, WithoutAnExecutorTheRestartRunsOnAThreadOfItsOwn) {
    AudioSpectrum spectrum;
    ASSERT_TRUE(spectrum.start());
    ASSERT_TRUE(server.pactl("set-default-sink two"));
    EXPECT_TRUE(eventually([&] { return spectrum.capturedSink() == "two"; }));
    EXPECT_TRUE(spectrum.isRunning());
    EXPECT_EQ(spectrum.setUpCount(), 2u);
}

TEST_F(AudioCapture, WithoutASinkSetUpFailsWithStatusZero) {
    ASSERT_TRUE(server.pactl("unload-module module-null-sink"));
    AudioSpectrum spectrum = makeSpectrum();
    EXPECT_FALSE(spectrum.start());
    ASSERT_TRUE(spectrum.lastError().has_value());
    EXPECT_EQ(spectrum.lastError()->status, 0);
    EXPECT_FALSE(spectrum.isRunning());
    EXPECT_FALSE(hasSpectrumThread());
}
