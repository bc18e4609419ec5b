#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "AudioFrame.h"
#include "RealFft.h"

namespace quellton {

// One buffer of one capture callback: 32-bit float samples, like an AudioBuffer.
struct SampleBuffer {
    std::uint32_t channels = 1;
    std::uint32_t bytes = 0;
    const float* data = nullptr;
};

// What the capture stream delivers.
struct StreamFormat {
    double sampleRate = 48000;
    int channels = 2;
    bool interleaved = true;
};

// The outcome of one analysis, ready to publish.
struct Analysis {
    AudioFrame frame;
    bool silent = false;
    double time = 0;
};

// Band and summary geometry of the analysis.
namespace spectrum {
inline constexpr int fftSize = RealFft::size;
inline constexpr int bandCount = AudioFrame::bandCount;
inline constexpr int waveCount = AudioFrame::waveCount;

struct Range {
    float lo;
    float hi;
};
// Edges of band i: 30 · (16000/30)^(i/64) … 30 · (16000/30)^((i+1)/64) Hz.
Range band(int i);
// Summary j: 0 bass 30–150, 1 mid 150–2000, 2 high 2000–12000, 3 level 30–12000 Hz.
Range summary(int j);
// Whether band i is narrower than one and a half bins and so takes an interpolated value.
bool interpolated(int i, double binHz);
}  // namespace spectrum

// The beat pulse: 1 when the bass value crosses 0.72 upwards at least 0.22 s after the last
// beat, then decaying with a time constant of 0.2 s.
struct BeatDetector {
    float beat = 0;
    double lastBeat = 0;
    float previousBass = 0;

    void detect(float bass, double now);
    void decay(float dt);
};

// The analysis of AudioSpectrum: sample intake into a ring of 4096 mono samples and one
// analysis per callback. Knows nothing of the sound server; times are passed in (seconds).
// Not thread-safe: one thread at a time (the spectrum queue, or set-up while no callback runs).
class SpectrumAnalyzer {
public:
    explicit SpectrumAnalyzer(double now);

    // Capture set-up: resources, stream format, and the reset of ring, counters and adaptive
    // references. Smoothed values, peaks, beat state and waveform gain survive it.
    void setUp(const StreamFormat& format);

    // Mixes one callback's buffers to mono into the ring, then analyses once.
    std::optional<Analysis> consume(std::span<const SampleBuffer> buffers, double now);
    std::optional<Analysis> analyze(double now);
    // The display waveform of 4096 chronological samples; updates the waveform gain.
    std::array<float, spectrum::waveCount> waveform(std::span<const float, spectrum::fftSize> s,
                                                    float dt);

    const StreamFormat& format() const { return format_; }
    int ringIndex() const { return ringIndex_; }
    long samplesSeen() const { return samplesSeen_; }
    std::span<const float> ring() const { return ring_; }
    float reference() const { return reference_; }
    const std::array<float, 4>& summaryAverage() const { return summaryAverage_; }
    float waveGain() const { return waveGain_; }
    float beat() const { return beat_.beat; }

private:
    using Bins = std::array<float, RealFft::bins>;
    using Bands = std::array<float, spectrum::bandCount>;

    void push(float sample);
    void unroll(std::array<float, spectrum::fftSize>& samples) const;
    void power(std::array<float, spectrum::fftSize>& samples);
    Bands bandLevels() const;
    void adaptReference(const Bands& db, float dt);
    Bands smoothBands(const Bands& db, float dt, float attack, float release);
    float summaries(double now, float dt, float attack, float release,
                    std::array<float, 4>& values);
    float meanPower(float loHz, float hiHz) const;

    std::unique_ptr<RealFft> fft_;
    std::array<float, spectrum::fftSize> window_{};
    std::array<float, spectrum::fftSize> ring_{};
    int ringIndex_ = 0;
    StreamFormat format_;
    long samplesSeen_ = 0;
    double lastAnalysis_;
    Bands bandSmooth_{};
    Bands peaks_{};
    Bands peakFall_{};
    float reference_;
    std::array<float, 4> summarySmooth_{};
    std::array<float, 4> summaryAverage_;
    BeatDetector beat_;
    float waveGain_ = 1;

    // Working buffers kept between analyses.
    Bins re_{}, im_{}, mags_{};
};

}  // namespace quellton
