#include "Uniforms.h"

#include <algorithm>

namespace quellton {

void Uniforms::setPalette(const Palette& palette) {
    Vec4* slots[] = {&pa, &pb, &pc, &pd};
    for (int i = 0; i < 4; ++i) *slots[i] = {palette.stops[i].r, palette.stops[i].g, palette.stops[i].b, 1.0f};
}

void Uniforms::setAudio(const AudioFrame& frame) {
    audio = {frame.bass, frame.mid, frame.high, frame.level};
    extra[0] = frame.beat;
}

SpectrumArray spectrumArray(const AudioFrame& frame) {
    SpectrumArray s{};
    auto out = std::copy(frame.bands.begin(), frame.bands.end(), s.begin());
    out = std::copy(frame.wave.begin(), frame.wave.end(), out);
    std::copy(frame.peaks.begin(), frame.peaks.end(), out);
    return s;
}

}  // namespace quellton
