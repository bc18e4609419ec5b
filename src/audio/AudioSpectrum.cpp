#include "AudioSpectrum.h"

#include <algorithm>
#include <chrono>

#include "MonitorCapture.h"
#include "ProcessWide.h"
#include "SerialExecutor.h"
#include "SpectrumAnalyzer.h"

namespace quellton {

double wallClockNow() {
    using namespace std::chrono;
    return duration<double>(system_clock::now().time_since_epoch()).count();
}

// What the capture callbacks reach, held weakly by them.
struct AudioSpectrum::State {
    explicit State(std::function<double()> c) : clock(std::move(c)), analyzer(clock()) {}

    std::function<double()> clock;
    SpectrumAnalyzer analyzer;
    PublishedRecord record;
};

namespace {

constexpr std::chrono::milliseconds firstPause{100};
constexpr std::chrono::milliseconds longestPause{1600};

AudioSpectrumOptions& sharedOptions() {
    static AudioSpectrumOptions options;
    return options;
}
}  // namespace

void AudioSpectrum::setSharedOptions(AudioSpectrumOptions options) {
    sharedOptions() = std::move(options);
}

AudioSpectrum& AudioSpectrum::shared() {
    return ProcessWide<AudioSpectrum>::instance([] { return std::make_unique<AudioSpectrum>(sharedOptions()); });
}

AudioSpectrum::AudioSpectrum(AudioSpectrumOptions options)
    : state_(std::make_shared<State>(std::move(options.clock))),
      mainThread_(std::move(options.mainThread)),
      log_(std::move(options.log)),
      alive_(std::make_shared<AudioSpectrum*>(this)) {
    if (!mainThread_) {
        ownExecutor_ = std::make_unique<SerialExecutor>();
        mainThread_ = [executor = ownExecutor_.get()](std::function<void()> task) {
            executor->post(std::move(task));
        };
    }
    if (!log_) log_ = [](const std::string&) {};
}

AudioSpectrum::~AudioSpectrum() {
    // Stopping joins the mainloop thread, so nothing is posted after it; a restart still
    // queued finds the instance gone. The timers go before the executor they post to.
    alive_.reset();
    stop();
    timers_.reset();
    ownExecutor_.reset();
}

PublishedAudio AudioSpectrum::published() const { return state_->record.get(); }
AudioFrame AudioSpectrum::frame() const { return state_->record.get().frame; }
double AudioSpectrum::lastSignal() const { return state_->record.get().lastSignal; }

bool AudioSpectrum::isRunning() const {
    std::lock_guard guard(control_);
    return running_;
}

bool AudioSpectrum::isReconnecting() const {
    std::lock_guard guard(control_);
    return reconnecting_;
}

std::string AudioSpectrum::capturedSink() const {
    std::lock_guard guard(control_);
    return capture_ ? capture_->sinkName() : std::string();
}

std::uint64_t AudioSpectrum::setUpCount() const {
    std::lock_guard guard(control_);
    return setUps_;
}

std::uint64_t AudioSpectrum::setUpAttempts() const {
    std::lock_guard guard(control_);
    return attempts_;
}

std::optional<CaptureError> AudioSpectrum::lastError() const {
    std::lock_guard guard(control_);
    return lastError_;
}

bool AudioSpectrum::start() {
    std::lock_guard guard(control_);
    return startLocked();
}

void AudioSpectrum::stop() {
    std::lock_guard guard(control_);
    reconnecting_ = false;
    outageLogged_ = false;
    ++round_;
    stopLocked();
}

bool AudioSpectrum::startLocked() {
    if (running_) return true;
    ++attempts_;
    try {
        setUp();
        running_ = true;
        ++setUps_;
        lastError_.reset();
        observeOutputDevice();
    } catch (const CaptureError& error) {
        // Not logged here: a start at launch stays off silently, a lost capture logs once.
        lastError_ = error;
        tearDown();
        return false;
    }
    if (reconnecting_) {
        reconnecting_ = false;
        ++round_;
    }
    reportBack();
    return true;
}

void AudioSpectrum::stopLocked() {
    if (!running_) return;
    removeOutputObserver();
    tearDown();
    running_ = false;
    state_->record.reset();
}

void AudioSpectrum::setUp() {
    std::weak_ptr<State> weak = state_;
    State& state = *state_;
    // The analysis is configured while no callback can run yet.
    capture_ = std::make_unique<MonitorCapture>(
        [&state](const StreamFormat& format) { state.analyzer.setUp(format); },
        [weak](std::span<const SampleBuffer> buffers) {
            const auto state = weak.lock();
            if (!state) return;
            if (auto analysis = state->analyzer.consume(buffers, state->clock()))
                state->record.publish(*analysis);
        });
}

void AudioSpectrum::tearDown() { capture_.reset(); }

enum class AudioSpectrum::Loss { device, server };

void AudioSpectrum::observeOutputDevice() {
    std::weak_ptr<AudioSpectrum*> alive = alive_;
    MainExecutor post = mainThread_;
    const std::uint64_t capture = setUps_;
    capture_->observe([alive, post, capture](MonitorCapture::Event event) {
        const Loss loss = event == MonitorCapture::Event::serverLost ? Loss::server : Loss::device;
        post([alive, capture, loss] {
            if (const auto self = alive.lock()) (*self)->restart(capture, loss);
        });
    });
}

void AudioSpectrum::removeOutputObserver() {
    if (capture_) capture_->removeObserver();
}

void AudioSpectrum::restart(std::uint64_t capture, Loss loss) {
    std::lock_guard guard(control_);
    // A report from an earlier capture (the owner stopped or started since) changes nothing.
    if (!running_ || capture != setUps_) return;
    if (loss == Loss::server) reportOutage();
    stopLocked();
    if (startLocked()) return;
    reportOutage();
    reconnecting_ = true;
    pause_ = firstPause;
    ++round_;
    scheduleReconnect();
}

void AudioSpectrum::reconnect(std::uint64_t round) {
    std::lock_guard guard(control_);
    if (!reconnecting_ || round != round_) return;
    if (!startLocked()) scheduleReconnect();
}

// One attempt after each pause, the pauses doubling up to a bound: a server that comes back
// is found within that bound, and a long outage costs one failed connect now and then.
void AudioSpectrum::scheduleReconnect() {
    if (!timers_) timers_ = std::make_unique<SerialExecutor>();
    const auto pause = pause_;
    pause_ = std::min(pause_ * 2, longestPause);
    std::weak_ptr<AudioSpectrum*> alive = alive_;
    timers_->postAfter(pause, [alive, post = mainThread_, round = round_] {
        post([alive, round] {
            if (const auto self = alive.lock()) (*self)->reconnect(round);
        });
    });
}

void AudioSpectrum::reportOutage() {
    if (outageLogged_) return;
    outageLogged_ = true;
    log_("Quellton: Der Tonserver ist nicht erreichbar; die Aufnahme versucht es weiter.");
}

void AudioSpectrum::reportBack() {
    if (!outageLogged_) return;
    outageLogged_ = false;
    log_("Quellton: Die Aufnahme läuft wieder (Ausgabe „" + capture_->sinkName() + "“).");
}

}  // namespace quellton
