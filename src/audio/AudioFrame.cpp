#include "AudioFrame.h"

#include <algorithm>
#include <cmath>

namespace quellton {

namespace {

// A value that is not above lo becomes lo (NaN included), then one above hi becomes hi.
float clampValue(float v, float lo, float hi) {
    if (!(v > lo)) return lo;
    return v > hi ? hi : v;
}

float contrast(float v, float s) { return clampValue(s * (v - 0.25f) + 0.25f, 0.0f, 1.0f); }

}  // namespace

AudioFrame AudioFrame::shaped(float s) const {
    AudioFrame out = *this;
    for (float& b : out.bands) b = contrast(b, s);
    for (float& p : out.peaks) p = contrast(p, s);
    const float gain = 0.7f * s + 0.3f;
    for (float& w : out.wave) w = clampValue(gain * w, -1.0f, 1.0f);
    out.bass = contrast(bass, s);
    out.mid = contrast(mid, s);
    out.high = contrast(high, s);
    out.level = contrast(level, s);
    out.beat = std::min(s * beat, 1.0f);
    return out;
}

void AudioFrame::approach(const AudioFrame& target, float t) {
    auto step = [t](float& x, float to) { x += t * (to - x); };
    for (int i = 0; i < bandCount; ++i) {
        step(bands[i], target.bands[i]);
        step(peaks[i], target.peaks[i]);
    }
    for (int i = 0; i < waveCount; ++i) step(wave[i], target.wave[i]);
    step(bass, target.bass);
    step(mid, target.mid);
    step(high, target.high);
    step(level, target.level);
    step(beat, target.beat);
}

AudioFrame AudioFrame::idle(double t, float a) {
    AudioFrame f;
    const double twoT = 2.0 * t;
    const float p = float(std::pow(1.0 - (twoT - std::trunc(twoT)), 6.0));  // 120 pulses per minute
    for (int i = 0; i < bandCount; ++i) {
        const double x = i / 63.0;
        const double s1 = std::sin(3.0 * std::sin(0.6 * t) + 1.7 * t + 9.0 * x);
        const double s2 = std::sin(0.9 * t - 4.0 * x);
        double v = (0.3 * s2 + 0.7) * (1.0 - 0.45 * x) * 0.5 * (0.45 * s1 + 0.55);
        if (i < 10) v += 0.45 * p * (1.0 - 8.0 * x);
        v = v > 0.0 ? std::min(v, 1.0) : 0.0;
        f.bands[i] = float(a * v);
        f.peaks[i] = std::min(a * float(v) + 0.06f, 1.0f);
    }
    for (int i = 0; i < waveCount; ++i)
        f.wave[i] = float(a * (0.45 * std::sin(4.0 * t + 0.11 * i) + 0.18 * std::sin(0.37 * i - 2.3 * t)));
    f.bass = float(a * (0.6 * p + 0.3));
    f.mid = float(a * (0.2 * std::sin(1.3 * t) + 0.4));
    f.high = float(a * (0.2 * std::sin(3.1 * t) + 0.3));
    f.level = float(a * (0.25 * p + 0.45));
    f.beat = a * p;
    return f;
}

}  // namespace quellton
