#include <gtest/gtest.h>

#include <QColor>

#include <atomic>
#include <chrono>
#include <thread>

#include <epoxy/gl.h>

#include "Catalog.h"
#include "ShaderLibrary.h"
#include "ShaderSource.h"
#include "Uniforms.h"

using namespace quellton;

namespace {

Visualizer probe(const std::string& id, const std::string& code, bool feedback = false) {
    return {id, id, Category::ring, 0, code, 1.0, feedback};
}

QColor pixel(const QImage& image, int x, int y) { return QColor(image.pixel(x, y)); }

}  // namespace

TEST(ShaderSource, AssemblyHasNothingBetweenThePieces) {
    const Visualizer plain = probe("a", "vec3 vis(vec2 p, vec2 uv) { return vec3(1.0); }");
    EXPECT_EQ(ShaderSource::assemble(plain), std::string(ShaderSource::prelude) + plain.code + ShaderSource::fragmentPlain);
    EXPECT_EQ(ShaderSource::prelude.back(), '}');
    const Visualizer fb = probe("b", "x", true);
    EXPECT_EQ(ShaderSource::assemble(fb).substr(ShaderSource::prelude.size() + 1), ShaderSource::fragmentFeedback);
}

TEST(ShaderLibrary, CompileOrderPutsTheFirstInFront) {
    const auto& all = catalog();
    const auto plain = ShaderLibrary::compileOrder(all, std::nullopt);
    ASSERT_EQ(plain.size(), all.size());
    EXPECT_EQ(plain.front(), "nation");
    EXPECT_EQ(ShaderLibrary::compileOrder(all, std::string("nope")), plain);
    const auto last = ShaderLibrary::compileOrder(all, std::string("epizykel"));
    EXPECT_EQ(last[0], "epizykel");
    EXPECT_EQ(last[1], "nation");
    EXPECT_EQ(last.back(), all[95].id);
}

TEST(ShaderLibrary, ASyntaxErrorIsRecordedWithTheCompilerLogAndOthersStillCompile) {
    ShaderLibrary& library = ShaderLibrary::shared();
    const std::vector<Visualizer> entries = {
        probe("broken", "vec3 vis(vec2 p, vec2 uv) { return vec3(p, 1.0) + notDeclared; }"),
        probe("wrongsignature", "vec3 vis(vec2 p) { return vec3(p, 1.0); }"),
        probe("fine", "vec3 vis(vec2 p, vec2 uv) { return vec3(uv, 0.5); }"),
        probe("finefeedback", "vec3 vis(vec2 p, vec2 uv, sampler2D prev) { return PREV(uv) * 0.5; }", true),
        probe("plainreadsprev", "vec3 vis(vec2 p, vec2 uv, sampler2D prev) { return PREV(uv); }", false),
    };
    library.compileBlocking(entries);
    const auto failures = library.failures();
    ASSERT_TRUE(failures.count("broken"));
    EXPECT_NE(failures.at("broken").find("notDeclared"), std::string::npos) << failures.at("broken");
    EXPECT_TRUE(failures.count("wrongsignature"));
    EXPECT_TRUE(failures.count("plainreadsprev"));
    EXPECT_FALSE(library.pipeline("broken"));
    ASSERT_TRUE(library.pipeline("fine"));
    EXPECT_FALSE(library.pipeline("fine")->feedback);
    ASSERT_TRUE(library.pipeline("finefeedback"));
    EXPECT_TRUE(library.pipeline("finefeedback")->feedback);
    EXPECT_FALSE(failures.count("fine"));
}

TEST(ShaderLibrary, BackgroundCompilationCallsBackOnceWithEveryIdSettled) {
    ShaderLibrary& library = ShaderLibrary::shared();
    std::vector<Visualizer> entries;
    for (int i = 0; i < 6; ++i)
        entries.push_back(probe("bg" + std::to_string(i), "vec3 vis(vec2 p, vec2 uv) { return vec3(" + std::to_string(i) + ".0); }"));
    entries[2].code = "not glsl";
    // Without a Qt application the completion runs on the compiling thread.
    std::atomic<int> calls{0};
    std::atomic<bool> settledAtCompletion{false};
    library.compileAll(entries, std::string("bg4"), [&] {
        bool all = true;
        const auto failures = library.failures();
        for (const auto& v : entries) all = all && (library.pipeline(v.id).has_value() != (failures.count(v.id) == 1));
        settledAtCompletion = all;
        ++calls;
    });
    for (int waited = 0; calls == 0 && waited < 6000; ++waited) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(settledAtCompletion);
    EXPECT_TRUE(library.failures().count("bg2"));
}

class OfflineRendering : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        ShaderLibrary::shared().compileBlocking(std::vector<Visualizer>{
            probe("updown", "vec3 vis(vec2 p, vec2 uv) { return uv.y > 0.5 ? vec3(1.0, 0.0, 0.0) : vec3(0.0, 0.0, 1.0); }"),
            probe("leftright", "vec3 vis(vec2 p, vec2 uv) { return p.x < 0.0 ? vec3(0.0, 1.0, 0.0) : vec3(0.0); }"),
            probe("resolution", "vec3 vis(vec2 p, vec2 uv) { return vec3(fract(RES.x), fract(RES.y), 0.0) * 2.0; }"),
            probe("accumulate", "vec3 vis(vec2 p, vec2 uv, sampler2D prev) { return PREV(uv) + vec3(0.004); }", true),
            probe("bright", "vec3 vis(vec2 p, vec2 uv, sampler2D prev) { return vec3(3.0); }", true),
            probe("helpers",
                  "vec3 vis(vec2 p, vec2 uv) { return vec3(abs(wave(1.25) - wave(0.25)) * 100.0, "
                  "abs(spec(1.25) - spec(1.0)) * 100.0, spec(-3.0) == spec(0.0) ? 0.0 : 1.0); }"),
            probe("timed", "vec3 vis(vec2 p, vec2 uv) { return vec3(fract(TIME), BASS, 0.5); }"),
        });
    }
    ShaderLibrary& library = ShaderLibrary::shared();
};

TEST_F(OfflineRendering, StillsAreUprightOpaqueAndRepeatable) {
    const auto image = library.snapshot(probe("updown", ""), {64, 32}, 1.0);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), QSize(64, 32));
    EXPECT_EQ(image->format(), QImage::Format_RGB32);
    EXPECT_GT(pixel(*image, 32, 2).red(), 200);  // red at the top
    EXPECT_LT(pixel(*image, 32, 2).blue(), 30);
    EXPECT_GT(pixel(*image, 32, 29).blue(), 200);
    EXPECT_EQ(qAlpha(image->pixel(5, 5)), 255);
    const auto side = library.snapshot(probe("leftright", ""), {64, 32}, 1.0);
    ASSERT_TRUE(side);
    EXPECT_GT(pixel(*side, 2, 16).green(), 150);
    EXPECT_LT(pixel(*side, 61, 16).green(), 10);
    const auto again = library.snapshot(probe("updown", ""), {64, 32}, 1.0);
    EXPECT_EQ(*image, *again);
}

TEST_F(OfflineRendering, FractionalSizesTruncateTheImageButNotTheResolutionUniform) {
    const auto image = library.snapshot(probe("resolution", ""), {40.5, 20.25}, 1.0);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), QSize(40, 20));
    const QColor c = pixel(*image, 20, 10);
    EXPECT_NEAR(c.red(), 255, 40);  // fract(40.5) * 2 = 1
    EXPECT_NEAR(c.green(), 128, 40);
}

TEST_F(OfflineRendering, BenchmarkMeasuresGpuTimeAndUnknownPipelinesOrEmptySizesGiveNothing) {
    const double ms = library.benchmark(probe("updown", ""), {64, 64});
    EXPECT_GT(ms, 0.0);
    EXPECT_LT(ms, 1000.0);
    EXPECT_GT(library.benchmark(probe("accumulate", "", true), {64, 64}), 0.0);
    EXPECT_EQ(library.benchmark(probe("neverCompiled", ""), {16, 16}), -1);
    EXPECT_FALSE(library.snapshot(probe("neverCompiled", ""), {16, 16}, 1.0));
    EXPECT_FALSE(library.snapshot(probe("updown", ""), {0, 16}, 1.0));
    EXPECT_FALSE(library.snapshot(probe("updown", ""), {100000, 16}, 1.0));
}

TEST_F(OfflineRendering, FeedbackStillsCarryTheirHistory) {
    // 241 frames each adding 0.004 reach about 0.96, far from a single frame's 0.004.
    const auto image = library.snapshot(probe("accumulate", "", true), {32, 16}, 6.3);
    ASSERT_TRUE(image);
    EXPECT_GT(pixel(*image, 16, 8).red(), 200);
    // Values above one survive in the float texture and are clamped only when shown.
    const auto bright = library.snapshot(probe("bright", "", true), {32, 16}, 6.3);
    ASSERT_TRUE(bright);
    EXPECT_GT(pixel(*bright, 16, 8).red(), 250);
}

TEST_F(OfflineRendering, PreludeLookupsClampOrWrap) {
    const auto image = library.snapshot(probe("helpers", ""), {16, 16}, 2.0);
    ASSERT_TRUE(image);
    const QColor c = pixel(*image, 8, 8);
    EXPECT_LT(c.red(), 4);
    EXPECT_LT(c.green(), 4);
    EXPECT_LT(c.blue(), 4);
}

TEST_F(OfflineRendering, StillInputsComeFromTimeAndFrame) {
    AudioFrame loud;
    loud.bass = 1.0f;
    const auto a = library.snapshot(probe("timed", ""), {16, 16}, 3.25, std::nullopt, AudioFrame::silent());
    const auto b = library.snapshot(probe("timed", ""), {16, 16}, 3.25, std::nullopt, loud);
    ASSERT_TRUE(a && b);
    EXPECT_NEAR(pixel(*a, 8, 8).red(), 64, 12);
    EXPECT_LT(pixel(*a, 8, 8).green(), 5);
    EXPECT_GT(pixel(*b, 8, 8).green(), 200);
}

TEST(Blending, PlainPipelinesBlendWithTheirAlphaFeedbackOnesReplace) {
    ShaderLibrary& library = ShaderLibrary::shared();
    library.compileBlocking(std::vector<Visualizer>{probe("white", "vec3 vis(vec2 p, vec2 uv) { return vec3(1.0); }")});
    const auto pipeline = library.pipeline("white");
    ASSERT_TRUE(pipeline);
    ASSERT_TRUE(library.bindThreadContext());
    auto target = RenderTarget::create(8, 8, GL_RGBA8);
    ASSERT_TRUE(target);
    target->bindForDrawing();
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    UniformBuffers buffers;
    Uniforms u;
    u.rt = {8, 8, 0, 0.5f};
    u.extra[1] = 10;
    const SpectrumArray s{};
    buffers.upload(&u, sizeof u, s.data(), sizeof s);
    pipeline->bind();
    drawFullScreenTriangle();
    std::array<unsigned char, 4> rgba{};
    glReadPixels(4, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    EXPECT_NEAR(rgba[0], 127, 3);  // half of white over the cleared black
    EXPECT_NEAR(rgba[3], 127, 3);  // the layer's alpha replaces the target's
}
