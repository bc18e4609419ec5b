// quellton-analyze: runs a WAV file through the spectrum analysis with a simulated clock and
// prints one JSON object per published frame.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

#include "SpectrumAnalyzer.h"
#include "WavFile.h"

using namespace quellton;

namespace {

int usage() {
    std::fprintf(stderr, "usage: quellton-analyze [--chunk N] FILE.wav\n");
    return 2;
}

void printArray(const char* name, std::span<const float> values) {
    std::printf("\"%s\": [", name);
    for (std::size_t i = 0; i < values.size(); ++i)
        std::printf(i ? ", %.6g" : "%.6g", double(values[i]));
    std::printf("], ");
}

void printFrame(const Analysis& a) {
    const AudioFrame& f = a.frame;
    std::printf("{\"t\": %.6f, ", a.time);
    printArray("bands", f.bands);
    printArray("peaks", f.peaks);
    printArray("wave", f.wave);
    std::printf("\"bass\": %.6g, \"mid\": %.6g, \"high\": %.6g, \"level\": %.6g, \"beat\": %.6g, "
                "\"silent\": %s}\n",
                double(f.bass), double(f.mid), double(f.high), double(f.level), double(f.beat),
                a.silent ? "true" : "false");
}

}  // namespace

int main(int argc, char** argv) {
    long chunk = 480;
    const char* path = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--chunk") && i + 1 < argc) {
            chunk = std::strtol(argv[++i], nullptr, 10);
            if (chunk < 1) return usage();
        } else if (!path && argv[i][0] != '-') {
            path = argv[i];
        } else {
            return usage();
        }
    }
    if (!path) return usage();

    std::string error;
    const auto wav = tools::readWav(path, error);
    if (!wav) {
        std::fprintf(stderr, "quellton-analyze: %s\n", error.c_str());
        return 1;
    }
    double now = 0;
    SpectrumAnalyzer analyzer(now);
    analyzer.setUp({double(wav->sampleRate), wav->channels, true});
    for (long frame = 0; frame < wav->frames(); frame += chunk) {
        const long count = std::min(chunk, wav->frames() - frame);
        const SampleBuffer buffer{std::uint32_t(wav->channels),
                                  std::uint32_t(count * wav->channels * sizeof(float)),
                                  wav->samples.data() + frame * wav->channels};
        now += double(count) / wav->sampleRate;
        if (const auto analysis = analyzer.consume(std::span(&buffer, 1), now))
            printFrame(*analysis);
    }
    return 0;
}
