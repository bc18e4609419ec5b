#include "SpectrumAnalyzer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

namespace quellton {

namespace {

constexpr int fftSize = spectrum::fftSize;
constexpr int lastBin = RealFft::bins - 1;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

constexpr float powerFloor = 1e-12f;
constexpr float initialBandLevel = -120;
constexpr float dynamicRange = 40;
constexpr float bandCurve = 1.7f;
constexpr float tiltExponent = 1.3f;
constexpr float attackTime = 0.022f;
constexpr float releaseTime = 0.13f;
constexpr float referenceFallTime = 4;
constexpr float peakFallAcceleration = 1.6f;
constexpr float summaryAverageTime = 1.5f;
constexpr float summaryReseedJump = 18;
constexpr float summaryScale = 14;
constexpr float summaryOffset = 0.4f;
constexpr float beatThreshold = 0.72f;
constexpr double beatSpacing = 0.22;
constexpr float beatDecayTime = 0.2f;
constexpr float silenceThreshold = -10;
constexpr float silentFade = 0.85f;
constexpr int waveStride = 4;
constexpr int waveSpan = spectrum::waveCount * waveStride;
constexpr float waveTargetRms = 0.32f;
constexpr float waveRmsFloor = 0.01f;
constexpr float waveGainTime = 0.4f;
constexpr double largestStep = 0.1;

// A value that is not above 0 (NaN included) becomes 0, one above 1 becomes 1.
float unit(float v) {
    if (!(v > 0)) return 0;
    return v > 1 ? 1 : v;
}

float decibels(float power) { return 10 * std::log10(power + powerFloor); }

float smoothStep(float& value, float target, float attack, float release) {
    value += (target - value) * (value < target ? attack : release);
    return value;
}

}  // namespace

namespace spectrum {

Range band(int i) {
    const double ratio = 16000.0 / 30.0;
    return {float(30 * std::pow(ratio, i / 64.0)), float(30 * std::pow(ratio, (i + 1) / 64.0))};
}

Range summary(int j) {
    static constexpr Range table[4] = {{30, 150}, {150, 2000}, {2000, 12000}, {30, 12000}};
    return table[j];
}

bool interpolated(int i, double binHz) {
    const Range r = band(i);
    return r.hi / binHz - r.lo / binHz < 1.5;
}

}  // namespace spectrum

void BeatDetector::detect(float bass, double now) {
    if (bass > beatThreshold && previousBass <= beatThreshold && now - lastBeat > beatSpacing) {
        beat = 1;
        lastBeat = now;
    }
    previousBass = bass;
}

void BeatDetector::decay(float dt) { beat *= std::exp(-dt / beatDecayTime); }

SpectrumAnalyzer::SpectrumAnalyzer(double now)
    : lastAnalysis_(now), reference_(nan), summaryAverage_{nan, nan, nan, nan} {}

void SpectrumAnalyzer::setUp(const StreamFormat& format) {
    if (!fft_) fft_ = std::make_unique<RealFft>();
    for (int n = 0; n < fftSize; ++n)
        window_[n] = float(0.5 * (1 - std::cos(2 * std::numbers::pi * n / fftSize)));
    format_ = format;
    ring_.fill(0);
    ringIndex_ = 0;
    samplesSeen_ = 0;
    reference_ = nan;
    summaryAverage_.fill(nan);
}

void SpectrumAnalyzer::push(float sample) {
    ++samplesSeen_;
    ring_[ringIndex_] = sample;
    ringIndex_ = (ringIndex_ + 1) % fftSize;
}

std::optional<Analysis> SpectrumAnalyzer::consume(std::span<const SampleBuffer> buffers,
                                                  double now) {
    if (buffers.empty() || !buffers[0].data || buffers[0].bytes == 0) return std::nullopt;
    const std::uint32_t bytes = buffers[0].bytes;
    if (format_.interleaved) {
        const int channels = std::max(format_.channels, 1);
        const std::size_t frames = bytes / (std::size_t(channels) * sizeof(float));
        const float* p = buffers[0].data;
        for (std::size_t f = 0; f < frames; ++f, p += channels)
            push(std::accumulate(p, p + channels, 0.0f) / float(channels));
    } else {
        const std::size_t frames = bytes / sizeof(float);
        // Buffers without data still count in the divisor.
        const float divisor = float(buffers.size());
        for (std::size_t f = 0; f < frames; ++f) {
            float sum = 0;
            for (const SampleBuffer& b : buffers)
                if (b.data && f < b.bytes / sizeof(float)) sum += b.data[f];
            push(sum / divisor);
        }
    }
    return analyze(now);
}

std::optional<Analysis> SpectrumAnalyzer::analyze(double now) {
    if (!fft_ || samplesSeen_ < fftSize) return std::nullopt;
    const float dt = float(std::min(now - lastAnalysis_, largestStep));
    lastAnalysis_ = now;
    const float attack = 1 - std::exp(-dt / attackTime);
    const float release = 1 - std::exp(-dt / releaseTime);

    std::array<float, fftSize> samples;
    unroll(samples);
    Analysis result;
    result.time = now;
    result.frame.wave = waveform(samples, dt);
    power(samples);

    const Bands db = bandLevels();
    adaptReference(db, dt);
    Bands out = smoothBands(db, dt, attack, release);
    std::array<float, 4> values{};
    const float energy = summaries(now, dt, attack, release, values);
    beat_.decay(dt);

    result.silent = decibels(energy) < silenceThreshold;
    if (result.silent) {
        for (float& v : out) v *= silentFade;
        bandSmooth_ = out;
    }
    result.frame.bands = out;
    result.frame.peaks = peaks_;
    result.frame.bass = values[0];
    result.frame.mid = values[1];
    result.frame.high = values[2];
    result.frame.level = values[3];
    result.frame.beat = result.silent ? 0 : beat_.beat;
    return result;
}

// Oldest sample first: ring positions ringIndex…4095, then 0…ringIndex−1.
void SpectrumAnalyzer::unroll(std::array<float, fftSize>& samples) const {
    auto next = std::copy(ring_.begin() + ringIndex_, ring_.end(), samples.begin());
    std::copy(ring_.begin(), ring_.begin() + ringIndex_, next);
}

void SpectrumAnalyzer::power(std::array<float, fftSize>& samples) {
    for (int n = 0; n < fftSize; ++n) samples[n] *= window_[n];
    fft_->forward(samples, re_, im_);
    for (int k = 0; k <= lastBin; ++k) mags_[k] = re_[k] * re_[k] + im_[k] * im_[k];
}

float SpectrumAnalyzer::meanPower(float loHz, float hiHz) const {
    const float binHz = float(format_.sampleRate / fftSize);
    // Below 32 kHz the top bands lie above Nyquist: they read the highest bin.
    const int a = std::min(std::max(int(loHz / binHz), 1), lastBin);
    const int b = std::min(std::max(int(hiHz / binHz), a), lastBin);
    return std::accumulate(mags_.begin() + a, mags_.begin() + b + 1, 0.0f) / float(b - a + 1);
}

SpectrumAnalyzer::Bands SpectrumAnalyzer::bandLevels() const {
    const double binHz = format_.sampleRate / fftSize;
    Bands db;
    db.fill(initialBandLevel);
    for (int i = 0; i < spectrum::bandCount; ++i) {
        const spectrum::Range r = spectrum::band(i);
        float e;
        if (spectrum::interpolated(i, binHz)) {
            const double c = (r.lo / binHz + r.hi / binHz) / 2;
            const int k = std::clamp(int(c), 1, lastBin - 1);
            const float f = float(c - k);
            e = (1 - f) * mags_[k] + f * mags_[k + 1];
        } else {
            e = meanPower(r.lo, r.hi);
        }
        const float tilt = std::pow(std::sqrt(r.lo * r.hi) / 1000, tiltExponent);
        db[i] = decibels(e * tilt);
    }
    return db;
}

// Rises at once to the loudest band, falls slowly.
void SpectrumAnalyzer::adaptReference(const Bands& db, float dt) {
    const float maxDb = *std::max_element(db.begin(), db.end());
    if (std::isnan(reference_) || reference_ < maxDb)
        reference_ = maxDb;
    else
        reference_ += (1 - std::exp(-dt / referenceFallTime)) * (maxDb - reference_);
}

SpectrumAnalyzer::Bands SpectrumAnalyzer::smoothBands(const Bands& db, float dt, float attack,
                                                      float release) {
    Bands out;
    for (int i = 0; i < spectrum::bandCount; ++i) {
        const float x = unit((db[i] - (reference_ - dynamicRange)) / dynamicRange);
        out[i] = smoothStep(bandSmooth_[i], std::pow(x, bandCurve), attack, release);
        // A peak falls with growing speed and never below its band.
        if (peaks_[i] <= out[i]) {
            peaks_[i] = out[i];
            peakFall_[i] = 0;
        } else {
            peakFall_[i] += peakFallAcceleration * dt;
            peaks_[i] = std::max(peaks_[i] - peakFall_[i] * dt, out[i]);
        }
    }
    return out;
}

// Fills the four summary values and returns the summed bass, mid and high power.
float SpectrumAnalyzer::summaries(double now, float dt, float attack, float release,
                                  std::array<float, 4>& values) {
    const float avgCoef = 1 - std::exp(-dt / summaryAverageTime);
    float energy = 0;
    for (int j = 0; j < 4; ++j) {
        const spectrum::Range r = spectrum::summary(j);
        const float e = meanPower(r.lo, r.hi);
        if (j < 3) energy += e;
        const float db = decibels(e);
        float& average = summaryAverage_[j];
        if (std::isnan(average) || std::abs(db - average) > summaryReseedJump) average = db;
        average += avgCoef * (db - average);
        const float v = unit((db - average) / summaryScale + summaryOffset);
        if (j == 0) beat_.detect(v, now);
        values[j] = smoothStep(summarySmooth_[j], v, attack, release);
    }
    return energy;
}

std::array<float, spectrum::waveCount> SpectrumAnalyzer::waveform(
    std::span<const float, fftSize> s, float dt) {
    const int n = fftSize;
    int start = n - waveSpan;
    for (int i = n - waveSpan - 256; i <= n - waveSpan - 1; ++i) {
        if (s[i] <= 0 && s[i + 1] > 0) {
            start = i;
            break;
        }
    }
    std::array<float, spectrum::waveCount> raw;
    float sumSquares = 0;
    for (int k = 0; k < spectrum::waveCount; ++k) {
        raw[k] = s[start + waveStride * k];
        sumSquares += raw[k] * raw[k];
    }
    const float rms = std::sqrt(sumSquares / spectrum::waveCount);
    const float g = waveTargetRms / std::max(rms, waveRmsFloor);
    waveGain_ += (1 - std::exp(-dt / waveGainTime)) * (g - waveGain_);
    for (float& v : raw) v = std::clamp(v * waveGain_, -1.0f, 1.0f);
    return raw;
}

}  // namespace quellton
