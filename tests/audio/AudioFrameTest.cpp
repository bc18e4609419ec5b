#include <gtest/gtest.h>

#include <cmath>

#include "AudioFrame.h"

using namespace quellton;

namespace {
AudioFrame rampFrame() {
    AudioFrame f;
    for (int i = 0; i < 64; ++i) {
        f.bands[i] = i / 63.0f;
        f.peaks[i] = 1.0f - i / 63.0f;
    }
    for (int i = 0; i < 256; ++i) f.wave[i] = std::sin(i * 0.1f) * 0.9f;
    f.bass = 0.9f;
    f.mid = 0.5f;
    f.high = 0.1f;
    f.level = 0.6f;
    f.beat = 0.6f;
    return f;
}
}  // namespace

TEST(AudioFrame, StrengthOneKeepsAndStrengthZeroFlattensAroundAQuarter) {
    const AudioFrame f = rampFrame();
    const AudioFrame one = f.shaped(1.0f);
    for (int i = 0; i < 64; ++i) {
        EXPECT_NEAR(one.bands[i], f.bands[i], 1e-7f);
        EXPECT_NEAR(one.peaks[i], f.peaks[i], 1e-7f);
    }
    EXPECT_EQ(one.wave, f.wave);
    EXPECT_NEAR(one.bass, f.bass, 1e-7f);
    EXPECT_NEAR(one.high, f.high, 1e-7f);
    EXPECT_EQ(one.beat, f.beat);

    const AudioFrame zero = f.shaped(0.0f);
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(zero.bands[i], 0.25f);
        EXPECT_EQ(zero.peaks[i], 0.25f);
    }
    for (int i = 0; i < 256; ++i) EXPECT_FLOAT_EQ(zero.wave[i], 0.3f * f.wave[i]);
    for (float v : {zero.bass, zero.mid, zero.high, zero.level}) EXPECT_EQ(v, 0.25f);
    EXPECT_EQ(zero.beat, 0.0f);
}

TEST(AudioFrame, LargeStrengthClampsEverythingButANegativeBeat) {
    AudioFrame f = rampFrame();
    f.bands[3] = 0.05f;
    f.bands[5] = std::nanf("");
    const AudioFrame s = f.shaped(2.5f);
    EXPECT_EQ(s.bass, 1.0f);
    EXPECT_EQ(s.bands[3], 0.0f);
    EXPECT_EQ(s.bands[5], 0.0f);  // not a number is not above the lower bound
    EXPECT_EQ(s.beat, 1.0f);
    for (float b : s.bands) EXPECT_TRUE(b >= 0.0f && b <= 1.0f);
    for (float p : s.peaks) EXPECT_TRUE(p >= 0.0f && p <= 1.0f);
    for (float w : s.wave) EXPECT_LE(std::abs(w), 1.0f);
    EXPECT_LE(s.level, 1.0f);
    EXPECT_GE(s.high, 0.0f);
    // The wave gain of the "extreme" preset.
    EXPECT_FLOAT_EQ(f.shaped(2.4f).wave[1], std::min(1.98f * f.wave[1], 1.0f));
    f.beat = -0.5f;
    EXPECT_EQ(f.shaped(2.0f).beat, -1.0f);  // the beat is capped above only
}

TEST(AudioFrame, ApproachMovesBySharesOfTheDistance) {
    AudioFrame a, b = rampFrame();
    a.bass = 1.0f;
    b.bass = 0.25f;
    AudioFrame half = a;
    half.approach(b, 0.5f);
    EXPECT_NEAR(half.bass, 0.625f, 1e-5f);
    EXPECT_NEAR(half.bands[63], 0.5f, 1e-6f);
    EXPECT_NEAR(half.wave[10], b.wave[10] * 0.5f, 1e-6f);
    AudioFrame same = a;
    same.approach(b, 0.0f);
    EXPECT_EQ(same, a);
    AudioFrame full = a;
    full.approach(b, 1.0f);
    EXPECT_EQ(full, b);
    AudioFrame over = a;
    over.approach(b, 2.0f);  // not clamped
    EXPECT_NEAR(over.bass, -0.5f, 1e-6f);
}

TEST(AudioFrame, IdlePulsesTwiceASecondAndScalesWithItsAmount) {
    AudioFrame none = AudioFrame::silent();  // nothing but the peaks' floor
    none.peaks.fill(0.06f);
    EXPECT_EQ(AudioFrame::idle(12.7, 0.0f), none);

    const AudioFrame f = AudioFrame::idle(0.0, 0.5f);
    EXPECT_EQ(f.beat, 0.5f);  // the pulse is 1 at every half second
    EXPECT_FLOAT_EQ(f.bass, 0.45f);
    EXPECT_FLOAT_EQ(f.level, 0.35f);
    EXPECT_FLOAT_EQ(f.mid, 0.2f);
    EXPECT_FLOAT_EQ(f.high, 0.15f);
    // Band 0 at t = 0: (0.3 sin 0 + 0.7) * 1 * 0.5 * (0.45 sin 0 + 0.55) + 0.45.
    EXPECT_FLOAT_EQ(f.bands[0], 0.5f * float(0.7 * 0.5 * 0.55 + 0.45));
    EXPECT_FLOAT_EQ(f.wave[100], float(0.5 * (0.45 * std::sin(11.0) + 0.18 * std::sin(37.0))));
    // A quarter second later the pulse has decayed to (1 - 0.5)^6.
    const AudioFrame later = AudioFrame::idle(0.25, 1.0f);
    EXPECT_FLOAT_EQ(later.beat, float(std::pow(0.5, 6)));
    for (int i = 0; i < 64; ++i) {
        EXPECT_GE(later.bands[i], 0.0f);
        EXPECT_LE(later.bands[i], 1.0f);
        EXPECT_LE(later.peaks[i], 1.0f);
    }
}
