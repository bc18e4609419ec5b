#include <gtest/gtest.h>

#include <epoxy/gl.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "Catalog.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"

using namespace quellton;

namespace {

// A renderer whose settings, sound and clocks the test controls.
struct Harness {
    RenderSettings settings;
    PublishedAudio audio;
    double wall = 1000.0;
    bool lowPower = false;
    VisualRenderer renderer;

    explicit Harness(const char* current = nullptr) : renderer(Role::wallpaper, 0.0, environment()) {
        if (current) settings.currentID = current;
        renderer.inputs().setGeometry({64, 36}, {0, 0, 64, 36}, 1.0);
    }
    RendererEnvironment environment() {
        RendererEnvironment env;
        env.settings = [this] { return settings; };
        env.audio = [this] { return audio; };
        env.wallClock = [this] { return wall; };
        env.lowPower = [this] { return lowPower; };
        return env;
    }
};

double meanBrightness(const RenderTarget& target) {
    std::vector<unsigned char> pixels(std::size_t(target.width * target.height * 4));
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer.id());
    glReadPixels(0, 0, target.width, target.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    double sum = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 4) sum += pixels[i] + pixels[i + 1] + pixels[i + 2];
    return sum / (3.0 * target.width * target.height);
}

class LiveRendering : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        std::vector<Visualizer> entries;
        for (const char* id : {"halo", "nation", "spektrogramm", "echo", "hopf"}) entries.push_back(*Catalog::byID(id));
        ShaderLibrary::shared().compileBlocking(entries);
    }
    void SetUp() override {
        ASSERT_TRUE(ShaderLibrary::shared().bindThreadContext());
        target = RenderTarget::create(64, 36, GL_RGBA8);
        ASSERT_TRUE(target);
    }
    std::optional<RenderTarget> target;
};

}  // namespace

TEST(DrawableSize, QualityBackingScaleAndFloor) {
    Inputs in;
    in.pointSize = {1440, 900};
    in.backing = 2.0;
    EXPECT_EQ(drawableExtent(in, Quality::saver, Role::wallpaper, 1.0), (PixelExtent{864, 540}));
    EXPECT_EQ(drawableExtent(in, Quality::balanced, Role::wallpaper, 1.0), (PixelExtent{1440, 900}));
    EXPECT_EQ(drawableExtent(in, Quality::max, Role::wallpaper, 1.0), (PixelExtent{2880, 1800}));
    EXPECT_EQ(drawableExtent(in, Quality::max, Role::wallpaper, 0.5), (PixelExtent{1440, 900}));
    EXPECT_EQ(drawableExtent(in, Quality::saver, Role::preview, 1.0), (PixelExtent{2160, 1350}));  // capped at 1.5
    in.backing = 1.0;
    EXPECT_EQ(drawableExtent(in, Quality::saver, Role::preview, 0.75), (PixelExtent{1080, 675}));
    in.pointSize = {10, 10};
    EXPECT_EQ(drawableExtent(in, Quality::saver, Role::wallpaper, 1.0), (PixelExtent{16, 16}));
    in.pointSize = {101, 33};
    in.backing = 1.0;
    EXPECT_EQ(drawableExtent(in, Quality::saver, Role::wallpaper, 0.5), (PixelExtent{30, 16}));  // 30.3 rounds to 30
}

TEST(DrawableSize, ScaleOfTheLayers) {
    EXPECT_EQ(layerScale(std::nullopt, std::nullopt), 1.0);
    EXPECT_EQ(layerScale(std::string("gargantua"), std::nullopt), 0.7);
    EXPECT_EQ(layerScale(std::string("gargantua"), std::string("wolkenflug")), 0.5);
    EXPECT_EQ(layerScale(std::string("nope"), std::string("hopf")), 0.6);
    EXPECT_EQ(layerScale(std::string("nope"), std::nullopt), 1.0);
}

TEST_F(LiveRendering, DrawsTheCurrentVisualization) {
    Harness h("halo");
    const auto frame = h.renderer.render(1.0, *target);
    EXPECT_TRUE(frame.drawn);
    EXPECT_EQ(frame.wanted, (PixelExtent{64, 36}));
    EXPECT_GT(meanBrightness(*target), 2.0);
    EXPECT_EQ(h.renderer.state().shown, "halo");
    // An unknown or uncompiled one leaves the frame black.
    Harness unknown("doesnotexist");
    EXPECT_TRUE(unknown.renderer.render(1.0, *target).drawn);
    EXPECT_LT(meanBrightness(*target), 0.5);
}

TEST_F(LiveRendering, PausedOrHiddenDrawsNothingAndKeepsTheClock) {
    Harness h("halo");
    h.renderer.render(1.0, *target);
    h.settings.paused = true;
    glBindFramebuffer(GL_FRAMEBUFFER, target->framebuffer.id());
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_FALSE(h.renderer.render(30.0, *target).drawn);
    EXPECT_EQ(h.renderer.state().last, 30.0);
    EXPECT_LT(meanBrightness(*target), 0.5);
    const double music = h.renderer.state().musicTime;
    h.settings.paused = false;
    h.renderer.render(30.016, *target);
    EXPECT_LT(h.renderer.state().musicTime - music, 0.016 * 2);  // one frame's step, not the pause
    h.renderer.inputs().setHidden(true);
    EXPECT_FALSE(h.renderer.render(31.0, *target).drawn);
}

// Both layers of a cross-fade are drawn: each feedback layer keeps its history until the fade ends.
TEST_F(LiveRendering, FeedbackBuffersLiveAsLongAsTheirLayer) {
    Harness h("spektrogramm");
    h.renderer.render(1.0, *target);
    ASSERT_EQ(h.renderer.feedbackIDs(), std::vector<std::string>{"spektrogramm"});
    EXPECT_EQ(h.renderer.feedbackFor("spektrogramm")->width, 64);
    h.settings.currentID = "echo";
    h.renderer.render(2.0, *target);
    EXPECT_EQ(h.renderer.feedbackIDs(), (std::vector<std::string>{"echo", "spektrogramm"}));
    h.renderer.render(2.5, *target);  // a wallpaper's fade lasts 1.1 s
    EXPECT_EQ(h.renderer.feedbackIDs(), (std::vector<std::string>{"echo", "spektrogramm"}));
    h.renderer.render(3.2, *target);  // the fade has ended: the old history goes in the same frame
    EXPECT_EQ(h.renderer.feedbackIDs(), std::vector<std::string>{"echo"});
    auto bigger = RenderTarget::create(80, 40, GL_RGBA8);
    ASSERT_TRUE(bigger);
    h.renderer.render(3.1, *bigger);
    EXPECT_EQ(h.renderer.feedbackFor("echo")->width, 80);
    EXPECT_EQ(h.renderer.feedbackFor("echo")->height, 40);
}

TEST_F(LiveRendering, WantedSizeFollowsQualityAndScale) {
    Harness h("halo");
    h.renderer.inputs().setGeometry({1440, 900}, {0, 0, 1440, 900}, 2.0);
    h.settings.quality = Quality::saver;
    EXPECT_EQ(h.renderer.render(1.0, *target).wanted, (PixelExtent{864, 540}));
    h.settings.currentID = "hopf";
    EXPECT_EQ(h.renderer.render(2.0, *target).wanted, (PixelExtent{518, 324}));  // fading: the smaller scale wins
}

TEST_F(LiveRendering, LowPowerCapsTheFrameRateAtThirty) {
    Harness h;
    h.settings.fps = 120;
    h.renderer.render(1.0, *target);
    EXPECT_EQ(h.renderer.fps(), 120);
    h.lowPower = true;
    h.renderer.render(1.1, *target);
    EXPECT_EQ(h.renderer.fps(), 30);
    h.lowPower = false;
    h.renderer.render(1.2, *target);
    EXPECT_EQ(h.renderer.fps(), 120);
}

TEST_F(LiveRendering, TheFrameLogIsWrittenOnlyWhenSwitchedOn) {
    const auto state = std::filesystem::temp_directory_path() / ("quellton-state-" + std::to_string(::getpid()));
    setenv("XDG_STATE_HOME", state.c_str(), 1);
    auto drawSixSeconds = [&](bool logging) {
        Harness h;
        RendererEnvironment env = h.environment();
        env.frameLog = logging;
        VisualRenderer renderer(Role::preview, 0.0, env);
        renderer.inputs().setGeometry({64, 36}, {0, 0, 64, 36}, 1.0);
        for (double t = 0.1; t < 6.0; t += 0.1) renderer.render(t, *target);
    };
    drawSixSeconds(false);
    EXPECT_FALSE(std::filesystem::exists(frameLogPath()));
    drawSixSeconds(true);
    std::ifstream log(frameLogPath());
    std::string line;
    ASSERT_TRUE(std::getline(log, line));
    EXPECT_NE(line.find(" vorschau bilder=51 mittel=100.00ms"), std::string::npos) << line;
    EXPECT_NE(line.find("ausgelassen=51"), std::string::npos) << line;  // every 100 ms frame is late at 60 fps
    std::filesystem::remove_all(state);
}
