#include "TestFrames.h"

#include <cmath>

namespace quellton {

namespace {

// Bands shaped by a weight per band position x in 0...1; loud music has a full waveform and a beat.
AudioFrame musicFrame(double time, float (*weight)(float)) {
    AudioFrame f;
    for (int i = 0; i < AudioFrame::bandCount; ++i) {
        const float x = i / 63.0f;
        f.bands[i] = weight(x) * float(0.75 + 0.2 * std::sin(time * 3.0 + i * 0.7));
        f.peaks[i] = std::min(f.bands[i] + 0.1f, 1.0f);
    }
    for (int i = 0; i < AudioFrame::waveCount; ++i)
        f.wave[i] = float(0.8 * std::sin(i * 0.2 + time * 5.0) * std::cos(i * 0.045));
    f.bass = weight(0.05f);
    f.mid = weight(0.45f);
    f.high = weight(0.9f);
    f.level = (f.bass + f.mid + f.high) / 3.0f;
    f.beat = 0.9f;
    return f;
}

}  // namespace

std::optional<AudioFrame> namedTestFrame(std::string_view name, double time) {
    if (name == "silent") return AudioFrame::silent();
    if (name == "idle") return AudioFrame::idle(time, 1.0f);
    if (name == "loud") return musicFrame(time, [](float) { return 1.0f; });
    if (name == "bass") return musicFrame(time, [](float x) { return x < 0.25f ? 1.0f : 0.05f; });
    if (name == "treble") return musicFrame(time, [](float x) { return x > 0.6f ? 1.0f : 0.05f; });
    return std::nullopt;
}

}  // namespace quellton
