#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <random>
#include <vector>

#include "PublishedAudio.h"
#include "SpectrumAnalyzer.h"

using namespace quellton;

namespace {

constexpr double pi = std::numbers::pi;

// Feeds a mono signal in callbacks of `chunk` frames, advancing a simulated clock.
struct Feeder {
    explicit Feeder(double rate = 48000, int chunk = 480) : rate(rate), chunk(chunk) {
        analyzer.setUp({rate, 1, true});
    }

    // Returns the last published analysis.
    std::optional<Analysis> feed(double seconds, const std::function<float(double)>& signal) {
        std::optional<Analysis> last;
        std::vector<float> buffer(chunk);
        const long total = std::lround(seconds * rate);
        for (long done = 0; done < total; done += chunk) {
            for (int k = 0; k < chunk; ++k) buffer[k] = signal((sample + k) / rate);
            sample += chunk;
            now += chunk / rate;
            const SampleBuffer b{1, uint32_t(chunk * sizeof(float)), buffer.data()};
            if (auto a = analyzer.consume(std::span(&b, 1), now)) last = a;
        }
        return last;
    }

    double rate;
    int chunk;
    long sample = 0;
    double now = 100;
    SpectrumAnalyzer analyzer{now};
};

std::function<float(double)> sine(double hz, double amplitude) {
    return [=](double t) { return float(amplitude * std::sin(2 * pi * hz * t)); };
}

float silence(double) { return 0; }

int bandOf(double hz) {
    for (int i = 0; i < 64; ++i)
        if (spectrum::band(i).lo <= hz && hz < spectrum::band(i).hi) return i;
    return -1;
}

}  // namespace

// The count of interpolated bands also pins the geometric spacing between the ends.
TEST(SpectrumBands, EdgesAndInterpolatedLowBands) {
    EXPECT_NEAR(spectrum::band(0).lo, 30.0, 0.05);
    EXPECT_NEAR(spectrum::band(63).hi, 16000.0, 0.01);
    for (int i = 0; i < 63; ++i) EXPECT_EQ(spectrum::band(i).hi, spectrum::band(i + 1).lo);

    // Narrow bands are exactly the lowest ones: 18 at 48 kHz, 17 at 44.1 kHz.
    for (auto [rate, expected] : {std::pair{48000.0, 18}, std::pair{44100.0, 17}}) {
        const double binHz = rate / 4096;
        int count = 0;
        while (count < 64 && spectrum::interpolated(count, binHz)) ++count;
        EXPECT_EQ(count, expected) << rate;
        for (int i = count; i < 64; ++i) EXPECT_FALSE(spectrum::interpolated(i, binHz)) << i;
    }
}

TEST(RealFft, MatchesTwiceTheDiscreteFourierTransform) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> uniform(-1, 1);
    std::array<float, 4096> x;
    for (float& v : x) v = uniform(random);
    std::array<float, 2048> re, im;
    RealFft fft;
    fft.forward(x, re, im);

    auto dft = [&](int k) {
        std::complex<double> sum;
        for (int n = 0; n < 4096; ++n) sum += double(x[n]) * std::polar(1.0, -2 * pi * k * n / 4096);
        return sum;
    };
    const double tolerance = 1e-2;
    EXPECT_NEAR(re[0], 2 * dft(0).real(), tolerance);
    EXPECT_NEAR(im[0], 2 * dft(2048).real(), tolerance);
    for (int k : {1, 17, 1000, 2047}) {
        EXPECT_NEAR(re[k], 2 * dft(k).real(), tolerance) << k;
        EXPECT_NEAR(std::abs(im[k]), std::abs(2 * dft(k).imag()), tolerance) << k;
    }
}

TEST(SpectrumIntake, MixesInterleavedAndSeparateChannelsToMono) {
    SpectrumAnalyzer stereo(0);
    stereo.setUp({48000, 2, true});
    std::vector<float> frames(1024);  // 4096 bytes
    for (int i = 0; i < 1024; ++i) frames[i] = i % 2 ? 0.5f : float(i) / 1024;
    const SampleBuffer interleaved{2, 4096, frames.data()};
    EXPECT_FALSE(stereo.consume(std::span(&interleaved, 1), 1));
    EXPECT_EQ(stereo.samplesSeen(), 512);
    EXPECT_EQ(stereo.ringIndex(), 512);
    EXPECT_FLOAT_EQ(stereo.ring()[3], (6.0f / 1024 + 0.5f) / 2);

    SpectrumAnalyzer split(0);
    split.setUp({48000, 2, false});
    std::vector<float> left(512, 0.25f), right(512, -0.75f);
    right[511] = 1;
    const SampleBuffer two[] = {{1, 2048, left.data()}, {1, 2048, right.data()}};
    split.consume(two, 1);
    EXPECT_EQ(split.samplesSeen(), 512);
    EXPECT_FLOAT_EQ(split.ring()[0], -0.25f);
    EXPECT_FLOAT_EQ(split.ring()[511], 0.625f);

    // A buffer without data still counts in the divisor.
    const SampleBuffer oneMissing[] = {{1, 2048, left.data()}, {1, 2048, nullptr}};
    split.consume(oneMissing, 1);
    EXPECT_FLOAT_EQ(split.ring()[512], 0.125f);
}

TEST(SpectrumIntake, FirstPublishAtTheRingsLastSampleRingWrapsAndEmptyCallbacksChangeNothing) {
    SpectrumAnalyzer a(0);
    std::vector<float> ramp(4095);
    for (int i = 0; i < 4095; ++i) ramp[i] = float(i);
    const SampleBuffer almost{1, uint32_t(ramp.size() * 4), ramp.data()};
    // Without set-up there is no FFT, so nothing is ever published.
    EXPECT_FALSE(a.consume(std::span(&almost, 1), 1));
    EXPECT_FALSE(a.consume(std::span(&almost, 1), 1));

    a.setUp({48000, 1, true});
    EXPECT_EQ(a.samplesSeen(), 0);
    EXPECT_EQ(a.ringIndex(), 0);
    EXPECT_FALSE(a.consume(std::span(&almost, 1), 1));
    const float more[] = {4095, 4096, 4097};
    const SampleBuffer one{1, 4, more};
    EXPECT_TRUE(a.consume(std::span(&one, 1), 1));
    EXPECT_EQ(a.ringIndex(), 0);
    const SampleBuffer two{1, 8, more + 1};
    EXPECT_TRUE(a.consume(std::span(&two, 1), 1));
    EXPECT_EQ(a.ringIndex(), 2);
    EXPECT_EQ(a.ring()[1], 4097.0f);
    EXPECT_EQ(a.ring()[2], 2.0f);

    // Callbacks without samples neither analyse nor move the ring.
    const SampleBuffer noData[] = {{1, 256, nullptr}, {1, 256, ramp.data()}};
    const SampleBuffer noBytes{1, 0, ramp.data()};
    EXPECT_FALSE(a.consume({}, 2));
    EXPECT_FALSE(a.consume(noData, 2));
    EXPECT_FALSE(a.consume(std::span(&noBytes, 1), 2));
    EXPECT_EQ(a.samplesSeen(), 4098);
    EXPECT_EQ(a.ringIndex(), 2);
}

class SineBand : public testing::TestWithParam<std::pair<double, double>> {};

TEST_P(SineBand, LandsInTheBandOfItsFrequencyOnly) {
    const auto [rate, hz] = GetParam();
    Feeder f(rate);
    const auto a = f.feed(0.6, sine(hz, 0.5));
    ASSERT_TRUE(a);
    EXPECT_FALSE(a->silent);
    const int target = bandOf(hz);
    const auto& bands = a->frame.bands;
    EXPECT_EQ(std::max_element(bands.begin(), bands.end()) - bands.begin(), target);
    EXPECT_GT(bands[target], 0.9f);
    for (int i = 0; i < 64; ++i) {
        if (std::abs(i - target) > 3) {
            EXPECT_LT(bands[i], 0.05f) << "band " << i;
        }
        EXPECT_GE(a->frame.peaks[i], bands[i]);
    }
}

INSTANTIATE_TEST_SUITE_P(Rates, SineBand,
                         testing::Values(std::pair{48000.0, 1000.0}, std::pair{44100.0, 440.0},
                                         std::pair{48000.0, 8000.0}, std::pair{44100.0, 12000.0},
                                         std::pair{48000.0, 300.0},
                                         std::pair{22050.0, 5000.0}));

TEST(SpectrumAnalysis, FirstAnalysisSeedsReferenceAndSummaries) {
    Feeder f;
    std::mt19937 random(3);
    std::uniform_real_distribution<float> noise(-0.5f, 0.5f);
    f.feed(0.5, [&](double) { return noise(random); });
    f.analyzer.setUp({48000, 1, true});
    EXPECT_TRUE(std::isnan(f.analyzer.reference()));
    for (float avg : f.analyzer.summaryAverage()) EXPECT_TRUE(std::isnan(avg));

    // Smoothed values survive the set-up, so compare against a fresh analyzer too.
    SpectrumAnalyzer fresh(0);
    fresh.setUp({48000, 1, true});
    std::vector<float> samples(4096);
    for (float& s : samples) s = noise(random);
    const SampleBuffer b{1, 4096 * 4, samples.data()};
    // A gap of seconds counts as a step of 0.1 s: a longer step would attack further.
    const auto a = fresh.consume(std::span(&b, 1), 30);
    ASSERT_TRUE(a);
    const float attack = 1 - std::exp(-0.1f / 0.022f);
    for (float v : {a->frame.bass, a->frame.mid, a->frame.high, a->frame.level})
        EXPECT_NEAR(v, 0.4f * attack, 1e-5f);
    EXPECT_FALSE(std::isnan(fresh.reference()));
    // The loudest band sits exactly at the reference: x = 1 before smoothing.
    EXPECT_NEAR(*std::max_element(a->frame.bands.begin(), a->frame.bands.end()), attack, 1e-5f);
}

TEST(SpectrumAnalysis, SilenceFadesBandsAndDropsTheBeat) {
    Feeder f;
    auto loud = f.feed(0.5, sine(80, 0.8));
    ASSERT_TRUE(loud && !loud->silent);
    // Once the ring holds only zeros every analysis is silent.
    f.feed(0.1, silence);
    std::optional<Analysis> previous = f.feed(0.01, silence);
    ASSERT_TRUE(previous && previous->silent);
    const float keep = std::exp(-0.01f / 0.13f) * 0.85f;
    for (int step = 0; step < 5; ++step) {
        const auto next = f.feed(0.01, silence);
        ASSERT_TRUE(next && next->silent);
        EXPECT_EQ(next->frame.beat, 0);
        for (int i = 0; i < 64; ++i)
            EXPECT_NEAR(next->frame.bands[i], previous->frame.bands[i] * keep, 1e-6f) << i;
        previous = next;
    }
    EXPECT_GT(previous->frame.bands[bandOf(80)], 0);

    // A quiet but audible tone is not silence; a far quieter one is.
    Feeder quiet;
    EXPECT_FALSE(quiet.feed(0.3, sine(1000, 0.01))->silent);
    Feeder quieter;
    EXPECT_TRUE(quieter.feed(0.3, sine(1000, 0.0005))->silent);
}

TEST(PublishedRecordTest, SilenceKeepsTheTimeOfTheLastSound) {
    PublishedRecord record;
    Analysis sound;
    sound.frame.bass = 0.5f;
    sound.time = 12;
    record.publish(sound);
    Analysis quiet;
    quiet.silent = true;
    quiet.time = 13;
    record.publish(quiet);
    EXPECT_EQ(record.get().lastSignal, 12);
    EXPECT_EQ(record.get().frame, quiet.frame);
    record.reset();
    EXPECT_EQ(record.get().lastSignal, 0);
    EXPECT_EQ(record.get().frame, AudioFrame::silent());
}

TEST(BeatDetector, SpacingAndRearming) {
    BeatDetector d;
    d.detect(0.5f, 10);
    d.detect(0.8f, 10.01);
    EXPECT_EQ(d.beat, 1);
    EXPECT_EQ(d.lastBeat, 10.01);
    d.decay(0.2f);
    EXPECT_NEAR(d.beat, std::exp(-1.0f), 1e-6f);

    // Staying above the threshold never fires again.
    d.detect(0.9f, 10.5);
    EXPECT_EQ(d.lastBeat, 10.01);
    // A new crossing within 0.22 s of the last beat is ignored...
    d.detect(0.72f, 10.1);
    d.detect(0.73f, 10.2);
    EXPECT_EQ(d.lastBeat, 10.01);
    // ...and one later than that fires.
    d.detect(0.3f, 10.25);
    d.detect(0.9f, 10.26);
    EXPECT_EQ(d.lastBeat, 10.26);
    EXPECT_EQ(d.beat, 1);
}

TEST(SpectrumAnalysis, BassOnsetIsABeat) {
    Feeder f;
    const auto calm = f.feed(1.0, sine(80, 0.05));
    ASSERT_TRUE(calm);
    EXPECT_LT(calm->frame.beat, 0.1f);
    float strongest = 0;
    for (int i = 0; i < 10; ++i) strongest = std::max(strongest, f.feed(0.01, sine(80, 0.3))->frame.beat);
    EXPECT_GT(strongest, 0.9f);
    EXPECT_LT(strongest, 1.0f);  // decayed already in the analysis that found it
}

TEST(SpectrumWaveform, StartsAtTheRisingZeroCrossing) {
    // A ramp through zero at p: its only rising crossing.
    auto startFor = [](int p) {
        SpectrumAnalyzer a(0);
        std::array<float, 4096> s;
        for (int i = 0; i < 4096; ++i) s[i] = float(i - p) / 4096;
        const auto wave = a.waveform(s, 0.01f);
        return std::lround(wave[1] / a.waveGain() * 4096 - 4) + p;
    };
    EXPECT_EQ(startFor(2900), 2900);
    EXPECT_EQ(startFor(2816), 2816);
    EXPECT_EQ(startFor(3071), 3071);
    EXPECT_EQ(startFor(2815), 3072);
    EXPECT_EQ(startFor(3500), 3072);
}

TEST(SpectrumWaveform, GainSettlesTowardsTheTargetLevel) {
    SpectrumAnalyzer a(0);
    std::array<float, 4096> loud, quiet;
    for (int i = 0; i < 4096; ++i) {
        loud[i] = float(std::sin(2 * pi * 440 * i / 48000.0));
        quiet[i] = 0.001f * loud[i];
    }
    auto rms = [](const auto& w) {
        float sum = 0;
        for (float v : w) sum += v * v;
        return std::sqrt(sum / w.size());
    };
    a.waveform(loud, 0.01f);
    // One step moves the gain by 1 − e^(−dt/0.4) of the way.
    const float g = a.waveGain();
    EXPECT_LT(g, 1);
    EXPECT_GT(g, 0.9f);
    std::array<float, 256> wave{};
    for (int i = 0; i < 400; ++i) wave = a.waveform(loud, 0.01f);  // 10 time constants
    EXPECT_NEAR(rms(wave), 0.32f, 0.003f);
    EXPECT_LE(wave[0], 0);  // starts at a rising zero crossing
    EXPECT_GT(wave[1], 0);

    for (int i = 0; i < 800; ++i) wave = a.waveform(quiet, 0.01f);
    EXPECT_NEAR(a.waveGain(), 32, 0.1f);
    EXPECT_NEAR(rms(wave), 32 * 0.001f / std::sqrt(2.0f), 0.001f);
}
