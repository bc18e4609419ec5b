#pragma once

#include <array>

#include "AudioFrame.h"
#include "Palette.h"

namespace quellton {

using Vec4 = std::array<float, 4>;

// Host twin of the shaders' uniform block U: eight vectors, 128 bytes, nothing between them.
struct Uniforms {
    Vec4 rt{};     // drawable width, height; time; layer alpha
    Vec4 mouse{};  // smoothed pointer xy; last click xy (p-coordinates)
    Vec4 audio{};  // bass, mid, high, level
    Vec4 extra{};  // beat, click age, aspect ratio, music time
    Vec4 pa{}, pb{}, pc{}, pd{};  // palette stops, w = 1

    void setPalette(const Palette& palette);
    void setAudio(const AudioFrame& frame);
};
static_assert(sizeof(Uniforms) == 128);

// The 384 floats every shader reads: bands 0-63, waveform 64-319, peaks 320-383.
using SpectrumArray = std::array<float, 384>;
SpectrumArray spectrumArray(const AudioFrame& frame);

}  // namespace quellton
