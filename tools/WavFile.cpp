#include "WavFile.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

namespace quellton::tools {

namespace {

constexpr int pcm = 1;
constexpr int ieeeFloat = 3;
constexpr int extensible = 0xFFFE;

// WAV is little-endian throughout.
std::uint32_t le(const unsigned char* p, int bytes) {
    std::uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | p[i];
    return v;
}

}  // namespace

std::optional<WavFile> readWav(const std::string& path, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot open " + path;
        return std::nullopt;
    }
    const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(in), {}};
    if (bytes.size() < 12 || std::memcmp(bytes.data(), "RIFF", 4) ||
        std::memcmp(bytes.data() + 8, "WAVE", 4)) {
        error = "not a WAV file";
        return std::nullopt;
    }
    WavFile wav;
    int format = 0, bits = 0;
    const unsigned char* data = nullptr;
    std::size_t dataSize = 0;
    for (std::size_t pos = 12; pos + 8 <= bytes.size();) {
        const unsigned char* chunk = bytes.data() + pos;
        const std::size_t size = std::min<std::size_t>(le(chunk + 4, 4), bytes.size() - pos - 8);
        if (!std::memcmp(chunk, "fmt ", 4) && size >= 16) {
            format = int(le(chunk + 8, 2));
            wav.channels = int(le(chunk + 10, 2));
            wav.sampleRate = int(le(chunk + 12, 4));
            bits = int(le(chunk + 22, 2));
            // The extensible format names the real one in the first bytes of its sub-format.
            if (format == extensible && size >= 40) format = int(le(chunk + 32, 2));
        } else if (!std::memcmp(chunk, "data", 4)) {
            data = chunk + 8;
            dataSize = size;
        }
        pos += 8 + size + (size & 1);
    }
    if (!data || wav.channels < 1 || wav.sampleRate < 1) {
        error = "missing format or data";
        return std::nullopt;
    }
    if (format == pcm && bits == 16) {
        wav.samples.resize(dataSize / 2);
        for (std::size_t i = 0; i < wav.samples.size(); ++i)
            wav.samples[i] = float(std::int16_t(le(data + 2 * i, 2))) / 32768.0f;
    } else if (format == ieeeFloat && bits == 32) {
        wav.samples.resize(dataSize / 4);
        for (std::size_t i = 0; i < wav.samples.size(); ++i) {
            const std::uint32_t word = le(data + 4 * i, 4);
            std::memcpy(&wav.samples[i], &word, 4);
        }
    } else {
        error = "only 16-bit integer and 32-bit float samples are supported";
        return std::nullopt;
    }
    wav.samples.resize(wav.frames() * wav.channels);
    return wav;
}

}  // namespace quellton::tools
