#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "AudioSpectrum.h"
#include "PulseTestServer.h"
#include "SpectrumAnalyzer.h"

using namespace quellton;
using namespace std::chrono_literals;
using test::SoundServerKind;

namespace {

// Stands in for the main thread: posted work runs only when the test drains it.
class TaskQueue {
public:
    void post(std::function<void()> task) {
        std::lock_guard guard(mutex_);
        tasks_.push_back(std::move(task));
    }
    void drain() {
        for (std::deque<std::function<void()>> batch;; batch.clear()) {
            {
                std::lock_guard guard(mutex_);
                batch.swap(tasks_);
            }
            if (batch.empty()) return;
            for (auto& task : batch) task();
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

// Polls the condition, running posted main-thread work, for up to `limit`.
bool eventually(TaskQueue& mainThread, const std::function<bool()>& condition,
                std::chrono::milliseconds limit = 8000ms) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        mainThread.drain();
        if (condition()) return true;
        std::this_thread::sleep_for(20ms);
    }
    mainThread.drain();
    return condition();
}

// The same capture tests run against PulseAudio and against PipeWire's pulse server.
class AudioCapture : public testing::TestWithParam<SoundServerKind> {
protected:
    void SetUp() override {
        server = test::makeSoundTestServer(GetParam());
        if (!server->ready())
            GTEST_FAIL() << "private " << test::kindName(GetParam()) << " server did not start\n" << server->logs();
        tone = server->dir() + "/tone.wav";
        // Long enough for the slowest test; mono at a low rate keeps the file small.
        ASSERT_TRUE(test::shell("sox -n -r 16000 -c 1 -b 16 " + tone + " synth 180 sine 440 vol 0.5 2>/dev/null"));
    }

    std::unique_ptr<AudioSpectrum> makeSpectrum() {
        AudioSpectrumOptions options;
        options.mainThread = [this](std::function<void()> task) { mainThread.post(std::move(task)); };
        options.log = [this](const std::string& line) { log.push_back(line); };
        return std::make_unique<AudioSpectrum>(std::move(options));
    }

    bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit = 8000ms) {
        return ::eventually(mainThread, condition, limit);
    }
    void settle(std::chrono::milliseconds time) { eventually([] { return false; }, time); }

    static bool hearsTone(const AudioSpectrum& s) {
        const AudioFrame f = s.frame();
        const int band = bandOf(440);
        return s.lastSignal() > 0 &&
               std::max_element(f.bands.begin(), f.bands.end()) - f.bands.begin() == band &&
               f.bands[band] > 0.5f;
    }

    static bool silent(const AudioSpectrum& s) {
        return s.frame() == AudioFrame::silent() && s.lastSignal() == 0;
    }

    std::unique_ptr<test::SoundTestServer> server;
    TaskQueue mainThread;
    std::vector<std::string> log;  // written on the main thread, which the test drains
    std::string tone;
};

std::string nameOf(const testing::TestParamInfo<SoundServerKind>& info) { return test::kindName(info.param); }

}  // namespace

INSTANTIATE_TEST_SUITE_P(Servers, AudioCapture, testing::Values(SoundServerKind::pulseAudio, SoundServerKind::pipeWire),
                         nameOf);

// An unplugged output on the way: the recorded sink disappears and the server picks another default.
TEST_P(AudioCapture, HearsAToneFollowsTheNewDefaultWhenItsSinkDisappearsAndStopsClean) {
    auto spectrum = makeSpectrum();
    ASSERT_TRUE(spectrum->start());
    EXPECT_TRUE(spectrum->isRunning());
    EXPECT_EQ(spectrum->capturedSink(), "one");
    EXPECT_TRUE(hasSpectrumThread());
    EXPECT_EQ(server->sourceOutputs(), 1);
    double before = wallClockNow();
    server->play(tone, "one");
    EXPECT_TRUE(eventually([&] { return hearsTone(*spectrum); }));
    EXPECT_GE(spectrum->lastSignal(), before);

    server->stopPlaying();
    server->play(tone, "two");
    ASSERT_TRUE(server->removeSink("one"));
    before = wallClockNow();
    EXPECT_TRUE(eventually([&] { return spectrum->capturedSink() == "two"; }));
    EXPECT_TRUE(eventually([&] { return hearsTone(*spectrum) && spectrum->lastSignal() > before; }));
    settle(300ms);
    EXPECT_EQ(spectrum->setUpCount(), 2u);
    EXPECT_EQ(server->sourceOutputs(), 1);

    spectrum->stop();
    EXPECT_FALSE(spectrum->isRunning());
    EXPECT_TRUE(silent(*spectrum));
    // Nothing arrives after a stop, and a second stop does nothing.
    std::this_thread::sleep_for(100ms);
    spectrum->stop();
    EXPECT_TRUE(silent(*spectrum));
    EXPECT_EQ(spectrum->setUpCount(), 2u);
    EXPECT_FALSE(hasSpectrumThread());
    EXPECT_TRUE(eventually([&] { return server->sourceOutputs() == 0; }));
    EXPECT_TRUE(log.empty());
}

// Torture as well: a hundred more switches while a tone plays on both sinks, each waited for.
TEST_P(AudioCapture, EachDefaultSinkChangeRestartsOnceOnTheNewSink) {
    auto spectrum = makeSpectrum();
    ASSERT_TRUE(spectrum->start());
    ASSERT_EQ(spectrum->capturedSink(), "one");
    server->play(tone, "two");
    // Through wpctl on PipeWire, through pactl on PulseAudio.
    ASSERT_TRUE(server->switchDefaultSink("two"));
    EXPECT_TRUE(eventually([&] { return spectrum->setUpCount() == 2; }));
    EXPECT_TRUE(spectrum->isRunning());
    EXPECT_EQ(spectrum->capturedSink(), "two");
    EXPECT_TRUE(eventually([&] { return hearsTone(*spectrum); }));
    settle(500ms);
    EXPECT_EQ(spectrum->setUpCount(), 2u);

    server->play(tone, "one");
    for (int i = 1; i <= 100; ++i) {
        const std::string sink = i % 2 ? "one" : "two";
        ASSERT_TRUE(server->pactl("set-default-sink " + sink));
        ASSERT_TRUE(eventually([&] { return spectrum->capturedSink() == sink; })) << "switch " << i;
        ASSERT_EQ(spectrum->setUpCount(), std::uint64_t(i + 2)) << "switch " << i;
    }
    settle(500ms);
    EXPECT_EQ(spectrum->setUpCount(), 102u);
    EXPECT_EQ(server->sourceOutputs(), 1);
    EXPECT_TRUE(eventually([&] { return hearsTone(*spectrum); }));

    // After a stop, a change of the default sink does nothing.
    spectrum->stop();
    ASSERT_TRUE(server->switchDefaultSink("one"));
    settle(300ms);
    EXPECT_FALSE(spectrum->isRunning());
    EXPECT_EQ(spectrum->setUpCount(), 102u);
    EXPECT_TRUE(log.empty());
}

// Torture: ten crashes of the sound server, the first a long outage; capture is back within
// three seconds of each return, until a stop during an outage ends the attempts.
TEST_P(AudioCapture, ComesBackByItselfAfterEachOfTenServerRestarts) {
    auto spectrum = makeSpectrum();
    ASSERT_TRUE(spectrum->start());
    server->play(tone, "one");
    ASSERT_TRUE(eventually([&] { return hearsTone(*spectrum); }));
    for (int cycle = 0; cycle < 10; ++cycle) {
        server->kill();
        // Without a server the analyser publishes silence, so the picture falls back to idle.
        ASSERT_TRUE(eventually([&] { return spectrum->isReconnecting(); })) << "cycle " << cycle;
        EXPECT_FALSE(spectrum->isRunning());
        EXPECT_TRUE(silent(*spectrum));
        EXPECT_EQ(spectrum->capturedSink(), "");
        if (cycle == 0) {
            ASSERT_EQ(log.size(), 1u);
            EXPECT_NE(log.front().find("Tonserver"), std::string::npos) << log.front();
            // The attempts thin out instead of spinning, and the log stays at one line.
            const auto attempts = spectrum->setUpAttempts();
            settle(3000ms);
            EXPECT_LE(spectrum->setUpAttempts() - attempts, 6u);
            EXPECT_GE(spectrum->setUpAttempts() - attempts, 2u);
            EXPECT_EQ(log.size(), 1u);
        } else {
            settle(std::chrono::milliseconds(100 * cycle));  // outages of different lengths
        }
        ASSERT_TRUE(server->restart()) << "cycle " << cycle << "\n" << server->logs();
        const auto back = std::chrono::steady_clock::now();
        ASSERT_TRUE(eventually([&] { return spectrum->isRunning(); }, 3000ms)) << "cycle " << cycle;
        EXPECT_LT(std::chrono::steady_clock::now() - back, 3s);
        EXPECT_FALSE(spectrum->isReconnecting());
        EXPECT_EQ(spectrum->capturedSink(), "one");
        EXPECT_EQ(server->sourceOutputs(), 1) << "cycle " << cycle;
        ASSERT_TRUE(eventually([&] { return log.size() == 2u * (cycle + 1); })) << "cycle " << cycle;
    }
    EXPECT_NE(log.back().find("„one“"), std::string::npos) << log.back();
    server->play(tone, "one");
    EXPECT_TRUE(eventually([&] { return hearsTone(*spectrum); }));

    // A stop while the server is gone ends the attempts; the owner may start again by hand.
    server->kill();
    ASSERT_TRUE(eventually([&] { return spectrum->isReconnecting(); }));
    spectrum->stop();
    EXPECT_FALSE(spectrum->isReconnecting());
    const auto attempts = spectrum->setUpAttempts();
    ASSERT_TRUE(server->restart());
    settle(2500ms);
    EXPECT_FALSE(spectrum->isRunning());
    EXPECT_EQ(spectrum->setUpAttempts(), attempts);
    EXPECT_EQ(server->sourceOutputs(), 0);
    EXPECT_TRUE(spectrum->start());
}

// Without an executor the restarts run at once on a thread of their own, so switches land while
// capture is being set up again, between reading the default and subscribing to its changes.
TEST_P(AudioCapture, WithoutAnExecutorRestartsFollowEverySwitchAndTheServer) {
    AudioSpectrumOptions options;
    options.log = [](const std::string&) {};
    AudioSpectrum spectrum(std::move(options));
    ASSERT_TRUE(spectrum.start());
    ASSERT_TRUE(server->pactl("set-default-sink two"));
    EXPECT_TRUE(eventually([&] { return spectrum.capturedSink() == "two"; }));
    EXPECT_EQ(spectrum.setUpCount(), 2u);
    for (int round = 0; round < 8; ++round) {
        for (int i = 0; i <= round % 3 + 1; ++i) {
            ASSERT_TRUE(server->pactl(std::string("set-default-sink ") + (i % 2 ? "two" : "one")));
            std::this_thread::sleep_for(std::chrono::milliseconds((round * 5 + i * 3) % 7));
        }
        const std::string last = server->defaultSink();
        EXPECT_TRUE(eventually([&] { return spectrum.capturedSink() == last; }, 3000ms)) << "round " << round;
    }
    settle(500ms);
    EXPECT_EQ(spectrum.capturedSink(), server->defaultSink());
    EXPECT_TRUE(spectrum.isRunning());
    EXPECT_EQ(server->sourceOutputs(), 1);
    server->kill();
    EXPECT_TRUE(eventually([&] { return spectrum.isReconnecting(); }));
    ASSERT_TRUE(server->restart());
    EXPECT_TRUE(eventually([&] { return spectrum.isRunning(); }));
}

TEST(AudioCaptureWithoutServer, StaysOffWithAnErrorAndDoesNotRetry) {
    // A socket that nothing listens on; never the user's own server.
    setenv("PULSE_SERVER", "unix:/nonexistent/quellton-test/native", 1);
    TaskQueue mainThread;
    AudioSpectrum spectrum({[&](std::function<void()> task) { mainThread.post(std::move(task)); }});
    EXPECT_FALSE(spectrum.start());
    EXPECT_FALSE(spectrum.isRunning());
    ASSERT_TRUE(spectrum.lastError().has_value());
    EXPECT_NE(spectrum.lastError()->status, 0);
    EXPECT_EQ(spectrum.capturedSink(), "");
    EXPECT_EQ(spectrum.published().lastSignal, 0);
    EXPECT_EQ(spectrum.frame(), AudioFrame::silent());
    // A failed start at launch leaves capture off; only a lost running capture is retried.
    eventually(mainThread, [] { return false; }, 500ms);
    EXPECT_FALSE(spectrum.isReconnecting());
    EXPECT_EQ(spectrum.setUpAttempts(), 1u);
    spectrum.stop();
    EXPECT_EQ(spectrum.setUpCount(), 0u);
}

// PipeWire's pulse server makes a stand-in sink when none is left; PulseAudio has none.
TEST(AudioCaptureOnPulseAudio, WithoutASinkSetUpFailsWithStatusZero) {
    test::PulseTestServer server;
    ASSERT_TRUE(server.ready());
    ASSERT_TRUE(server.pactl("unload-module module-null-sink"));
    AudioSpectrum spectrum({[](std::function<void()> task) { task(); }});
    EXPECT_FALSE(spectrum.start());
    ASSERT_TRUE(spectrum.lastError().has_value());
    EXPECT_EQ(spectrum.lastError()->status, 0);
    EXPECT_FALSE(spectrum.isRunning());
    EXPECT_FALSE(hasSpectrumThread());
}
