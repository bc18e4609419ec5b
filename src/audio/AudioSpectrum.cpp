#include "AudioSpectrum.h"

#include <chrono>

#include "MonitorCapture.h"
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
AudioSpectrumOptions& sharedOptions() {
    static AudioSpectrumOptions options;
    return options;
}
}  // namespace

void AudioSpectrum::setSharedOptions(AudioSpectrumOptions options) {
    sharedOptions() = std::move(options);
}

AudioSpectrum& AudioSpectrum::shared() {
    static AudioSpectrum instance(sharedOptions());
    return instance;
}

AudioSpectrum::AudioSpectrum(AudioSpectrumOptions options)
    : state_(std::make_shared<State>(std::move(options.clock))),
      mainThread_(std::move(options.mainThread)),
      alive_(std::make_shared<AudioSpectrum*>(this)) {
    if (!mainThread_) {
        ownExecutor_ = std::make_unique<SerialExecutor>();
        mainThread_ = [executor = ownExecutor_.get()](std::function<void()> task) {
            executor->post(std::move(task));
        };
    }
}

AudioSpectrum::~AudioSpectrum() {
    // Stopping joins the mainloop thread, so nothing is posted after it; a restart still
    // queued finds the instance gone.
    alive_.reset();
    stop();
    ownExecutor_.reset();
}

PublishedAudio AudioSpectrum::published() const { return state_->record.get(); }
AudioFrame AudioSpectrum::frame() const { return state_->record.get().frame; }
double AudioSpectrum::lastSignal() const { return state_->record.get().lastSignal; }

bool AudioSpectrum::isRunning() const {
    std::lock_guard guard(control_);
    return running_;
}

std::string AudioSpectrum::capturedSink() const {
    std::lock_guard guard(control_);
    return capture_ ? capture_->sinkName() : std::string();
}

std::uint64_t AudioSpectrum::setUpCount() const {
    std::lock_guard guard(control_);
    return setUps_;
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
    stopLocked();
}

bool AudioSpectrum::startLocked() {
    if (running_) return true;
    try {
        setUp();
        running_ = true;
        ++setUps_;
        lastError_.reset();
        observeOutputDevice();
    } catch (const CaptureError& error) {
        // Neither shown nor logged: capture simply stays off.
        lastError_ = error;
        tearDown();
    }
    return running_;
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

void AudioSpectrum::observeOutputDevice() {
    std::weak_ptr<AudioSpectrum*> alive = alive_;
    MainExecutor post = mainThread_;
    capture_->observeDefaultSink([alive, post] {
        post([alive] {
            if (const auto self = alive.lock()) (*self)->restart();
        });
    });
}

void AudioSpectrum::removeOutputObserver() {
    if (capture_) capture_->removeObserver();
}

void AudioSpectrum::restart() {
    std::lock_guard guard(control_);
    if (!running_) return;
    stopLocked();
    startLocked();
}

}  // namespace quellton
