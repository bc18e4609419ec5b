// Every visualization of the catalog on the real GPU path, at a small size.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "Catalog.h"
#include "ShaderLibrary.h"
#include "TestFrames.h"

using namespace quellton;

namespace {

constexpr PixelSize small{96, 54};

// Rows whose reactions include the pointer.
const std::set<std::string> followsMouse = {
    "nation", "skyline", "faecher", "seide", "plasma", "nebel", "bokeh", "tunnel", "synthwave", "nachtfahrt",
    "stadt", "blob", "wuerfel", "torus", "metaballs", "warp", "kristall", "gyro", "fraktaltunnel", "mandelbulb",
    "tesserakt", "hyperschnitt", "hopf", "24zeller", "julia4d", "tinte", "lichtmaler", "sternennebel",
    "plasmakugel", "meeresflug", "wolkenflug", "gargantua", "neonroehren", "vulkan", "ferrofluid", "quecksilber",
    "stachelkugel", "supernova", "helix", "lichtdom", "aether", "kaliset", "moire", "wasserlicht", "reaktor",
    "anamorph"};

// Rows that react to the beat and the music time but to no part of the spectrum.
const std::set<std::string> beatOnly = {"wolkenflug"};

struct Stats {
    double mean = 0, deviation = 0, brightest = 0;
};

Stats stats(const QImage& image) {
    double sum = 0, squares = 0, brightest = 0;
    const int n = image.width() * image.height();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = image.pixel(x, y);
            const double l = 0.2126 * qRed(c) + 0.7152 * qGreen(c) + 0.0722 * qBlue(c);
            sum += l;
            squares += l * l;
            brightest = std::max({brightest, double(qRed(c)), double(qGreen(c)), double(qBlue(c))});
        }
    const double mean = sum / n;
    return {mean, std::sqrt(std::max(squares / n - mean * mean, 0.0)), brightest};
}

// Mean absolute difference per channel, 0...255.
double difference(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
        }
    return sum / (3.0 * a.width() * a.height());
}

class Bodies : public ::testing::TestWithParam<std::string> {
protected:
    static void SetUpTestSuite() { ShaderLibrary::shared().compileAllBlocking(); }

    struct Point {
        float x, y;
    };
    const Visualizer& v() const { return *Catalog::byID(GetParam()); }
    QImage still(double time, const char* frame = "idle", Point mouse = {0, 0}) {
        auto image = ShaderLibrary::shared().snapshot(v(), small, time, std::nullopt, namedTestFrame(frame, time),
                                                      {mouse.x, mouse.y});
        EXPECT_TRUE(image) << GetParam();
        return image ? *image : QImage();
    }
};

}  // namespace

TEST_P(Bodies, CompilesDrawsAndReacts) {
    const auto failures = ShaderLibrary::shared().failures();
    ASSERT_FALSE(failures.count(GetParam())) << failures.at(GetParam());
    const auto pipeline = ShaderLibrary::shared().pipeline(GetParam());
    ASSERT_TRUE(pipeline);
    EXPECT_EQ(pipeline->feedback, v().feedback);  // the signature of its kind

    for (double t : {2.0, 6.3, 11.0}) {
        const Stats s = stats(still(t));
        EXPECT_GT(s.brightest, 40) << "black at " << t;
        EXPECT_GT(s.deviation, 2.0) << "uniform at " << t;
    }
    const double t = 6.3;
    EXPECT_GT(difference(still(t, "silent"), still(t, "loud")), 1.0) << "silence and loud music look alike";
    if (!beatOnly.count(GetParam())) {
        EXPECT_GT(difference(still(t, "bass"), still(t, "treble")), 0.3) << "different spectra look alike";
    }
    if (followsMouse.count(GetParam())) {
        EXPECT_GT(difference(still(t, "idle", {0, 0}), still(t, "idle", {0.6f, 0.3f})), 0.5) << "ignores the pointer";
    }
    if (v().feedback) {
        const auto first = ShaderLibrary::shared().snapshotAfter(1, v(), small, t, std::nullopt, std::nullopt, {0, 0});
        ASSERT_TRUE(first);
        EXPECT_GT(difference(*first, still(t)), 1.0) << "no feedback history";
    }
}

INSTANTIATE_TEST_SUITE_P(Catalog, Bodies, ::testing::ValuesIn([] {
                             std::vector<std::string> ids;
                             for (const auto& v : catalog()) ids.push_back(v.id);
                             return ids;
                         }()),
                         [](const auto& info) { return "_" + info.param; });
