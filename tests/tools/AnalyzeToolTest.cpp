#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "SpectrumAnalyzer.h"

using namespace quellton;

namespace {

// The numbers of one field of a printed frame: one for a number, all of a list, none when missing.
std::vector<double> field(const std::string& line, const std::string& key) {
    const std::size_t at = line.find("\"" + key + "\": ");
    if (at == std::string::npos) return {};
    const char* p = line.c_str() + at + key.size() + 4;
    const bool list = *p == '[';
    std::vector<double> values;
    for (char* end = nullptr;; p = end) {
        while (*p == '[' || *p == ',' || *p == ' ') ++p;
        const double v = std::strtod(p, &end);
        if (end == p) break;
        values.push_back(v);
        if (!list) break;
    }
    return values;
}

// A field that holds one number, else -1.
double number(const std::string& line, const std::string& key) {
    const auto values = field(line, key);
    return values.size() == 1 ? values[0] : -1;
}

int loudestBand(const std::string& line) {
    const auto bands = field(line, "bands");
    return int(std::max_element(bands.begin(), bands.end()) - bands.begin());
}

bool silent(const std::string& line) { return line.find("\"silent\": true}") != std::string::npos; }

// The printed lines, or none when the tool fails.
std::vector<std::string> analyze(const std::string& wav, const std::string& options = "") {
    FILE* out = popen((std::string(QUELLTON_ANALYZE) + " " + options + " " + wav).c_str(), "r");
    if (!out) return {};
    std::string text;
    char buffer[65536];
    while (std::size_t n = std::fread(buffer, 1, sizeof buffer, out)) text.append(buffer, n);
    if (pclose(out) != 0) return {};
    std::vector<std::string> lines;
    for (std::size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(text.substr(start, end - start));
    return lines;
}

int bandOf(double hz) {
    for (int i = 0; i < 64; ++i)
        if (spectrum::band(i).lo <= hz && hz < spectrum::band(i).hi) return i;
    return -1;
}

class AnalyzeTool : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(dir); }
    void TearDown() override { std::filesystem::remove_all(dir); }

    std::string sox(const std::string& name, const std::string& format, const std::string& effects) {
        const std::string path = (dir / name).string();
        const std::string command = "sox -n " + format + " " + path + " " + effects + " 2>/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return path;
    }

    std::filesystem::path dir = std::filesystem::temp_directory_path() / ("quellton-analyze-" + std::to_string(::getpid()));
};

}  // namespace

TEST_F(AnalyzeTool, ToneInStereo16BitLandsInItsBand) {
    const auto lines = analyze(sox("tone.wav", "-r 44100 -c 2 -b 16", "synth 1 sine 1000 vol 0.5"));
    // 44100 frames in chunks of 480: the ring is full after the 9th chunk, then one per chunk.
    ASSERT_EQ(lines.size(), 92u - 8u);
    EXPECT_NEAR(number(lines.front(), "t"), 9 * 480 / 44100.0, 1e-6);
    const std::string& last = lines.back();
    EXPECT_EQ(field(last, "bands").size(), 64u);
    EXPECT_EQ(field(last, "peaks").size(), 64u);
    EXPECT_EQ(field(last, "wave").size(), 256u);
    EXPECT_EQ(loudestBand(last), bandOf(1000));
    EXPECT_FALSE(silent(last));
    EXPECT_GT(number(last, "level"), 0);
}

TEST_F(AnalyzeTool, FloatMonoWithOwnChunkAndSilence) {
    const auto lines = analyze(sox("mix.wav", "-r 48000 -c 1 -e floating-point -b 32", "synth 0.5 sine 3000 pad 0 0.5"),
                               "--chunk 1024");
    // 48000 frames in chunks of 1024: 47 callbacks, the 4th fills the ring.
    ASSERT_EQ(lines.size(), 47u - 3u);
    EXPECT_NEAR(number(lines[0], "t"), 4 * 1024 / 48000.0, 1e-6);
    EXPECT_NEAR(number(lines[1], "t") - number(lines[0], "t"), 1024 / 48000.0, 1e-6);
    EXPECT_FALSE(silent(lines[5]));
    EXPECT_EQ(loudestBand(lines[5]), bandOf(3000));
    EXPECT_TRUE(silent(lines.back()));
}

TEST_F(AnalyzeTool, RejectsWhatItCannotRead) {
    EXPECT_TRUE(analyze((dir / "missing.wav").string()).empty());
    EXPECT_TRUE(analyze(sox("wide.wav", "-r 8000 -c 1 -b 24", "synth 0.1 sine 100")).empty());
}
