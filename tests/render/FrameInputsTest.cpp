#include <gtest/gtest.h>

#include <cmath>

#include "FrameInputs.h"

using namespace quellton;

namespace {
RenderSettings settingsFor(const std::string& id) {
    RenderSettings s;
    s.currentID = id;
    return s;
}
}  // namespace

TEST(CrossFade, WallpaperFadesOverOnePointOneSecondsAndASwitchStartsFromWhatWasShown) {
    FrameState state(0.0);
    EXPECT_EQ(state.advanceSelection(settingsFor("nation"), Role::wallpaper, 0.0), 1.0f);  // first: nothing to fade from
    EXPECT_FALSE(state.previous);
    EXPECT_EQ(state.advanceSelection(settingsFor("halo"), Role::wallpaper, 10.0), 0.0f);
    EXPECT_EQ(state.previous, "nation");
    EXPECT_EQ(state.shown, "halo");
    const float quarter = state.advanceSelection(settingsFor("halo"), Role::wallpaper, 10.275);
    EXPECT_NEAR(quarter, 0.15625f, 1e-6f);  // smoothstep, not linear
    EXPECT_NEAR(state.advanceSelection(settingsFor("halo"), Role::wallpaper, 10.55), 0.5f, 1e-6f);
    EXPECT_TRUE(state.previous);
    EXPECT_EQ(state.advanceSelection(settingsFor("halo"), Role::wallpaper, 11.1), 1.0f);
    EXPECT_FALSE(state.previous);

    state.advanceSelection(settingsFor("a"), Role::wallpaper, 15.0);
    state.advanceSelection(settingsFor("b"), Role::wallpaper, 15.5);
    EXPECT_EQ(state.previous, "a");
    EXPECT_EQ(state.shown, "b");
    EXPECT_EQ(state.switchedAt, 15.5);
}

TEST(CrossFade, PreviewIsFasterAndFollowsHover) {
    FrameState state(0.0);
    RenderSettings s = settingsFor("nation");
    state.advanceSelection(s, Role::preview, 0.0);
    s.hoverID = "pegel";
    EXPECT_EQ(state.advanceSelection(s, Role::preview, 1.0), 0.0f);
    EXPECT_EQ(state.shown, "pegel");
    EXPECT_LT(state.advanceSelection(s, Role::preview, 1.3), 1.0f);
    EXPECT_EQ(state.advanceSelection(s, Role::preview, 1.35), 1.0f);
    EXPECT_FALSE(state.previous);
    // The wallpaper ignores hovering.
    FrameState wall(0.0);
    wall.advanceSelection(s, Role::wallpaper, 0.0);
    EXPECT_EQ(wall.shown, "nation");
}

TEST(FrameAdvance, IdleBlendWaitsForOnePointFiveSecondsOfSilence) {
    EXPECT_FALSE(isSilent(10.0, 8.6));
    EXPECT_TRUE(isSilent(10.0, 8.5));
    FrameState state(0.0);
    const RenderSettings s;
    state.advanceInputs(0.1, 0.1, false, AudioFrame::silent(), s, {0, 0});
    EXPECT_NEAR(state.idleBlend, std::exp(-0.1 / 0.6), 1e-6);
    state.idleBlend = 0;
    state.advanceInputs(0.1, 0.2, true, AudioFrame::silent(), s, {0, 0});
    EXPECT_NEAR(state.idleBlend, 1 - std::exp(-0.1 / 0.6), 1e-6);
}

TEST(FrameAdvance, SmoothingTimeConstantAndItsOffSwitch) {
    AudioFrame live;
    live.bass = 1.0f;
    RenderSettings s;  // smoothing 0.15: time constant 0.057 s
    FrameState state(0.0);
    state.idleBlend = 0;
    state.advanceInputs(0.057, 1.0, false, live, s, {0, 0});
    EXPECT_NEAR(state.smoothed.bass, 1 - std::exp(-1.0), 1e-5);
    s.smoothing = 0.0005f;
    FrameState sharp(0.0);
    sharp.idleBlend = 0;
    sharp.advanceInputs(0.016, 1.0, false, live, s, {0, 0});
    EXPECT_EQ(sharp.smoothed, live.shaped(1.0f));
    s.reactivity = 0.0f;
    sharp.advanceInputs(0.016, 1.0, false, live, s, {0, 0});
    EXPECT_EQ(sharp.smoothed.bass, 0.25f);
}

TEST(FrameAdvance, MusicTimeRunsWithLevelAndBeat) {
    RenderSettings s;
    s.smoothing = 0;
    FrameState quiet(0.0);
    quiet.idleBlend = 0;
    quiet.advanceInputs(0.1, 1.0, false, AudioFrame::silent(), s, {0, 0});
    EXPECT_NEAR(quiet.musicTime, 0.055, 1e-6);  // silence runs at 0.55 of real time
    AudioFrame loud;
    loud.level = 1;
    loud.beat = 1;
    FrameState busy(0.0);
    busy.idleBlend = 0;
    busy.advanceInputs(0.1, 1.0, false, loud, s, {0, 0});
    EXPECT_NEAR(busy.musicTime, 0.185, 1e-6);
}

TEST(FrameAdvance, PointerEasesTowardsItsTarget) {
    FrameState state(0.0);
    state.advanceInputs(0.1, 1.0, true, AudioFrame::silent(), RenderSettings{}, {1.0f, -0.5f});
    const float k = float(1 - std::exp(-0.4));
    EXPECT_NEAR(state.mouse[0], k, 1e-6f);
    EXPECT_NEAR(state.mouse[1], -0.5f * k, 1e-6f);
}

TEST(Pointer, TargetsFollowThePointerWithinTheirLimits) {
    Inputs in;
    in.screenRect = {100, 100, 300, 200};
    const double displayHeight = 1000;
    auto at = [&](double x, double yUp, Role role) {
        return mouseTarget(in, role, std::array<double, 2>{x, displayHeight - yUp}, displayHeight);
    };
    EXPECT_EQ(at(250, 200, Role::preview), (Point2{0, 0}));  // the centre
    EXPECT_EQ(at(400 + 41, 200, Role::preview), (Point2{0, 0}));
    const Point2 near = at(400 + 39, 200, Role::preview);
    EXPECT_NEAR(near[0], 1.89f, 1e-5f);
    EXPECT_NEAR(at(400 + 41, 200, Role::wallpaper)[0], 1.91f, 1e-5f);
    EXPECT_EQ(at(5000, 5000, Role::wallpaper), (Point2{3.0f, 1.5f}));
    EXPECT_EQ(mouseTarget(in, Role::wallpaper, std::nullopt, displayHeight), (Point2{0, 0}));
    in.screenRect.width = 0;
    EXPECT_EQ(at(250, 200, Role::wallpaper), (Point2{0, 0}));
}

TEST(Ripple, ClicksBecomePCoordinates) {
    LockedInputs inputs;
    inputs.setGeometry({1600, 900}, {0, 0, 1600, 900}, 2);
    inputs.rippleAtLocal(800, 450, 5.0);
    EXPECT_EQ(inputs.copy().click, (Point2{0, 0}));
    EXPECT_EQ(inputs.copy().clickedAt, 5.0);
    inputs.rippleAtLocal(1600, 900, 6.0);
    EXPECT_NEAR(inputs.copy().click[0], 1.7777778f, 1e-6f);
    EXPECT_EQ(inputs.copy().click[1], 1.0f);
    inputs.setGeometry({1600, 900}, {-1600, 0, 1600, 900}, 1);
    inputs.rippleAtScreen(-800, 0, 7.0);
    EXPECT_EQ(inputs.copy().click, (Point2{0, -1}));
    inputs.rippleAtScreen(3000, 0, 8.0);  // not clamped
    EXPECT_GT(inputs.copy().click[0], 3.0f);
}

TEST(Uniforms, LayoutContentsAndSpectrumOrder) {
    EXPECT_EQ(offsetof(Uniforms, mouse), 16u);
    EXPECT_EQ(offsetof(Uniforms, extra), 48u);
    EXPECT_EQ(offsetof(Uniforms, pd), 112u);
    FrameState state(100.0);
    state.musicTime = 3601.5;
    state.mouse = {0.25f, -0.5f};
    state.smoothed.bass = 0.7f;
    state.smoothed.beat = 0.3f;
    Inputs in;
    in.click = {1, 2};
    in.clickedAt = 103.0;
    const Uniforms u = state.uniforms(3705.0, 800, 400, 0.4f, in, 10);
    EXPECT_EQ(u.rt, (Vec4{800, 400, 5.0f, 0.4f}));
    EXPECT_EQ(u.mouse, (Vec4{0.25f, -0.5f, 1, 2}));
    EXPECT_EQ(u.audio[0], 0.7f);
    EXPECT_EQ(u.extra, (Vec4{0.3f, 3602.0f, 2.0f, 1.5f}));
    EXPECT_EQ(u.pa, (Vec4{1, 1, 1, 1}));  // Silber's first stop

    AudioFrame f;
    f.bands[63] = 1;
    f.wave[0] = 2;
    f.wave[255] = 3;
    f.peaks[0] = 4;
    const SpectrumArray s = spectrumArray(f);
    EXPECT_EQ(s[63], 1);
    EXPECT_EQ(s[64], 2);
    EXPECT_EQ(s[319], 3);
    EXPECT_EQ(s[320], 4);
}

TEST(Palettes, OverrideMustBeValid) {
    RenderSettings s;
    EXPECT_EQ(layerPalette(s, 5), 5);
    s.paletteOverride = 3;
    EXPECT_EQ(layerPalette(s, 5), 3);
    s.paletteOverride = 14;
    EXPECT_EQ(layerPalette(s, 5), 5);
}
