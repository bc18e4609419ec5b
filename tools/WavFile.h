#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quellton::tools {

// A WAV file's samples as interleaved 32-bit floats.
struct WavFile {
    int sampleRate = 0;
    int channels = 0;
    std::vector<float> samples;

    long frames() const { return channels ? long(samples.size()) / channels : 0; }
};

// Reads 16-bit integer or 32-bit float PCM (also in the extensible format); empty with a
// reason in `error` otherwise.
std::optional<WavFile> readWav(const std::string& path, std::string& error);

}  // namespace quellton::tools
