#pragma once

#include <array>

namespace quellton {

// One analysed moment of sound, copied freely between threads.
struct AudioFrame {
    static constexpr int bandCount = 64;
    static constexpr int waveCount = 256;

    std::array<float, bandCount> bands{};
    std::array<float, bandCount> peaks{};
    std::array<float, waveCount> wave{};
    float bass = 0, mid = 0, high = 0, level = 0, beat = 0;

    bool operator==(const AudioFrame&) const = default;

    static AudioFrame silent() { return {}; }

    // Contrast around 0.25 by the reaction strength; the receiver is unchanged.
    AudioFrame shaped(float strength) const;
    // One exponential smoothing step towards target; amount is not clamped.
    void approach(const AudioFrame& target, float amount);
    // A synthetic, music-like frame for the times when nothing plays.
    static AudioFrame idle(double time, float amount);
};

}  // namespace quellton
