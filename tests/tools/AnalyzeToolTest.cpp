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

// The fields of one printed frame that the tests look at.
struct Line {
    double t = -1;
    std::vector<double> bands, peaks, wave;
    double level = -1;
    bool silent = false;
};

std::vector<double> numberArray(const std::string& line, const std::string& key) {
    std::vector<double> values;
    std::size_t pos = line.find("\"" + key + "\": [");
    if (pos == std::string::npos) return values;
    const char* p = line.c_str() + line.find('[', pos) + 1;
    while (*p && *p != ']') {
        char* end = nullptr;
        values.push_back(std::strtod(p, &end));
        if (end == p) return {};
        p = end;
        while (*p == ',' || *p == ' ') ++p;
    }
    return values;
}

double number(const std::string& line, const std::string& key) {
    const std::size_t pos = line.find("\"" + key + "\": ");
    return pos == std::string::npos ? -1 : std::strtod(line.c_str() + pos + key.size() + 4, nullptr);
}

std::vector<Line> analyze(const std::string& wav, const std::string& options = "") {
    std::vector<Line> lines;
    const std::string command = std::string(QUELLTON_ANALYZE) + " " + options + " " + wav;
    FILE* out = popen(command.c_str(), "r");
    if (!out) return lines;
    std::string text;
    char buffer[65536];
    while (std::size_t n = std::fread(buffer, 1, sizeof buffer, out)) text.append(buffer, n);
    if (pclose(out) != 0) return {};
    for (std::size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos;
         start = end + 1) {
        const std::string s = text.substr(start, end - start);
        Line l;
        l.t = number(s, "t");
        l.bands = numberArray(s, "bands");
        l.peaks = numberArray(s, "peaks");
        l.wave = numberArray(s, "wave");
        l.level = number(s, "level");
        l.silent = s.find("\"silent\": true}") != std::string::npos;
        lines.push_back(l);
    }
    return lines;
}

class AnalyzeTool : public testing::Test {
protected:
    void SetUp() override {
        dir = std::filesystem::temp_directory_path() /
              ("quellton-analyze-" + std::to_string(::getpid()));
        std::filesystem::create_directories(dir);
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    std::string sox(const std::string& name, const std::string& format,
                    const std::string& effects) {
        const std::string path = (dir / name).string();
        const std::string command =
            "sox -n " + format + " " + path + " " + effects + " 2>/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return path;
    }

    std::filesystem::path dir;
};

int bandOf(double hz) {
    for (int i = 0; i < 64; ++i)
        if (spectrum::band(i).lo <= hz && hz < spectrum::band(i).hi) return i;
    return -1;
}

}  // namespace

TEST_F(AnalyzeTool, ToneInStereo16BitLandsInItsBand) {
    const auto lines = analyze(sox("tone.wav", "-r 44100 -c 2 -b 16", "synth 1 sine 1000 vol 0.5"));
    // 44100 frames in chunks of 480: the ring is full after the 9th chunk, then one per chunk.
    ASSERT_EQ(lines.size(), 92u - 8u);
    EXPECT_NEAR(lines.front().t, 9 * 480 / 44100.0, 1e-6);
    const Line& last = lines.back();
    ASSERT_EQ(last.bands.size(), 64u);
    ASSERT_EQ(last.peaks.size(), 64u);
    ASSERT_EQ(last.wave.size(), 256u);
    EXPECT_EQ(std::max_element(last.bands.begin(), last.bands.end()) - last.bands.begin(),
              bandOf(1000));
    EXPECT_FALSE(last.silent);
    EXPECT_GT(last.level, 0);
}

TEST_F(AnalyzeTool, FloatMonoWithOwnChunkAndSilence) {
    const auto lines = analyze(
        sox("mix.wav", "-r 48000 -c 1 -e floating-point -b 32", "synth 0.5 sine 3000 pad 0 0.5"),
        "--chunk 1024");
    // 48000 frames in chunks of 1024: 47 callbacks, the 4th fills the ring.
    ASSERT_EQ(lines.size(), 47u - 3u);
    EXPECT_NEAR(lines.front().t, 4 * 1024 / 48000.0, 1e-6);
    EXPECT_NEAR(lines[1].t - lines[0].t, 1024 / 48000.0, 1e-6);
    EXPECT_FALSE(lines[5].silent);
    EXPECT_EQ(std::max_element(lines[5].bands.begin(), lines[5].bands.end()) -
                  lines[5].bands.begin(),
              bandOf(3000));
    EXPECT_TRUE(lines.back().silent);
}

TEST_F(AnalyzeTool, RejectsWhatItCannotRead) {
    EXPECT_TRUE(analyze((dir / "missing.wav").string()).empty());
    EXPECT_TRUE(analyze(sox("wide.wav", "-r 8000 -c 1 -b 24", "synth 0.1 sine 100")).empty());
}
