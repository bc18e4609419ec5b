#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "AudioFrame.h"
#include "CaptureError.h"
#include "PublishedAudio.h"
#include "SystemLog.h"

namespace quellton {

class MonitorCapture;
class SerialExecutor;
class SpectrumAnalyzer;

// Seconds on the wall clock; every reader of lastSignal uses this clock.
double wallClockNow();

// Where the restart after a change of the default output runs: the owner's thread.
using MainExecutor = std::function<void(std::function<void()>)>;

struct AudioSpectrumOptions {
    // Empty: a private serial thread stands in for the main thread.
    MainExecutor mainThread;
    std::function<double()> clock = wallClockNow;
    // Receives one line when the sound server goes away and one when capture is back.
    std::function<void(const std::string&)> log = systemLog;
};

// Captures what the computer plays (the monitor of the default sink), analyses it and
// publishes the latest AudioFrame. Control calls (start, stop, isRunning) belong to the
// owner's thread; the published record may be read from any thread.
//
// A running capture follows the default sink. When the sound server goes away (or a restart
// after a device change fails) it publishes silence and tries again with growing pauses until
// capture is back; stop() ends the waiting.
class AudioSpectrum {
public:
    // The one instance of the program, created on first use with the options given to
    // setSharedOptions before that (the application hands in its main-thread executor).
    static AudioSpectrum& shared();
    static void setSharedOptions(AudioSpectrumOptions options);

    explicit AudioSpectrum(AudioSpectrumOptions options = {});
    ~AudioSpectrum();
    AudioSpectrum(const AudioSpectrum&) = delete;
    AudioSpectrum& operator=(const AudioSpectrum&) = delete;

    PublishedAudio published() const;
    AudioFrame frame() const;
    double lastSignal() const;

    bool isRunning() const;
    // Running capture was lost and set-up is being retried.
    bool isReconnecting() const;
    // If not running: set up; on success run and observe the default output, on failure
    // tear down silently. Returns isRunning().
    bool start();
    // If running: stop observing, tear down, and publish the silent frame with lastSignal 0.
    // Ends reconnecting.
    void stop();

    // Diagnostics: the sink whose monitor is recorded (empty while stopped), the number of
    // successful set-ups and of all set-up attempts so far, and the error of the last failed
    // set-up.
    std::string capturedSink() const;
    std::uint64_t setUpCount() const;
    std::uint64_t setUpAttempts() const;
    std::optional<CaptureError> lastError() const;

private:
    struct State;
    enum class Loss;

    void setUp();
    void tearDown();
    void observeOutputDevice();
    void removeOutputObserver();
    void restart(std::uint64_t capture, Loss loss);
    void reconnect(std::uint64_t round);
    void scheduleReconnect();
    void reportOutage();
    void reportBack();
    bool startLocked();
    void stopLocked();

    std::shared_ptr<State> state_;
    std::unique_ptr<SerialExecutor> ownExecutor_;
    MainExecutor mainThread_;
    std::function<void(const std::string&)> log_;
    // Lets posted work find out that this instance is gone.
    std::shared_ptr<AudioSpectrum*> alive_;

    // Serialises the control calls in case the restart runs on another thread.
    mutable std::mutex control_;
    bool running_ = false;
    std::unique_ptr<MonitorCapture> capture_;
    std::uint64_t setUps_ = 0;
    std::uint64_t attempts_ = 0;
    std::optional<CaptureError> lastError_;

    // Reconnecting: the pause before the next attempt, the round that a timer belongs to
    // (a newer round or a stop makes older timers void), and whether the outage was logged.
    bool reconnecting_ = false;
    std::chrono::milliseconds pause_{};
    std::uint64_t round_ = 0;
    bool outageLogged_ = false;
    std::unique_ptr<SerialExecutor> timers_;
};

}  // namespace quellton
