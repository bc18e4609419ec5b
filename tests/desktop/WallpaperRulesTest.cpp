#include <gtest/gtest.h>

#include "Coverage.h"
#include "WallpaperRules.h"

namespace quellton {
namespace {

// Windows are rebuilt only for a real change of the frames, or when there are none.
TEST(WallpaperRules, AllScreensOffKeepsThePrimaryAndOnlyARealChangeOfTheFramesRebuilds) {
    EXPECT_EQ(keptScreens(std::vector<int>{7, 3, 5}, true), (std::vector<int>{7, 3, 5}));
    EXPECT_EQ(keptScreens(std::vector<int>{7, 3, 5}, false), std::vector<int>{7});
    EXPECT_TRUE(keptScreens(std::vector<int>{}, false).empty());

    const std::vector<RectF> two{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};
    EXPECT_TRUE(layoutUnchanged(two, two, true));
    EXPECT_FALSE(layoutUnchanged(two, two, false));
    // A moved screen, a different order, one screen more or less.
    EXPECT_FALSE(layoutUnchanged(two, {{0, 0, 1920, 1080}, {1920, 56, 1280, 1024}}, true));
    EXPECT_FALSE(layoutUnchanged(two, {two[1], two[0]}, true));
    EXPECT_FALSE(layoutUnchanged(two, {two[0]}, true));
}

TEST(WallpaperRules, ClickHitsTheFrameWithLowerEdgesInAndUpperEdgesOut) {
    const std::vector<RectF> frames{{0, 0, 100, 50}, {100, 0, 100, 50}};
    EXPECT_EQ(framesContaining(frames, 0, 0), std::vector<std::size_t>{0});
    EXPECT_EQ(framesContaining(frames, 100, 10), std::vector<std::size_t>{1});
    EXPECT_EQ(framesContaining(frames, 99.5, 49.9), std::vector<std::size_t>{0});
    EXPECT_TRUE(framesContaining(frames, 50, 50).empty());
    EXPECT_TRUE(framesContaining(frames, 200, 10).empty());
    EXPECT_TRUE(framesContaining(frames, -0.1, 10).empty());
}

TEST(WallpaperRules, PointerPixelsMapToTheScreenThatShowsThem) {
    // Two stacked screens, the primary (720 high) on top: bottom-up y = 720 - top-down y.
    const auto toBottomUp = [](QPointF p) { return QPointF(p.x(), 720 - p.y()); };
    const RectF upper = bottomUpFrame(0, 0, 1280, 720, toBottomUp);
    const RectF lower = bottomUpFrame(0, 720, 1280, 1024, toBottomUp);
    EXPECT_EQ(upper, (RectF{0, 0, 1280, 720}));
    EXPECT_EQ(lower, (RectF{0, -1024, 1280, 1024}));

    const auto screenOf = [&](QPoint pixel) {
        const QPointF p = toBottomUp(pixelToGlobal(pixel, 1.0));
        return framesContaining({upper, lower}, p.x(), p.y());
    };
    EXPECT_EQ(screenOf(QPoint(10, 0)), std::vector<std::size_t>{0});
    EXPECT_EQ(screenOf(QPoint(10, 719)), std::vector<std::size_t>{0});
    EXPECT_EQ(screenOf(QPoint(10, 720)), std::vector<std::size_t>{1});
    EXPECT_EQ(screenOf(QPoint(1279, 1743)), std::vector<std::size_t>{1});
    EXPECT_TRUE(screenOf(QPoint(1280, 10)).empty());

    EXPECT_EQ(pixelToGlobal(QPoint(99, 9), 2.0), QPointF(49.75, 4.75));
}

// Unmapped, minimised and smaller windows are seen on the X server in the X11 desktop tests.
TEST(Coverage, OnlyNormalWindowsOfThisDesktopAndThoseMaximizedBothWaysInTheWorkAreaCover) {
    const QRect screen(0, 0, 1280, 720), workArea(0, 32, 1280, 688);
    ClientWindow full;
    full.viewable = true;
    full.frame = screen;
    EXPECT_TRUE(coversScreen(full, screen, workArea));
    EXPECT_FALSE(coversScreen(full, QRect(1280, 0, 1280, 720), workArea));
    for (auto hide : {+[](ClientWindow& w) { w.normal = false; },
                      +[](ClientWindow& w) { w.onCurrentDesktop = false; }}) {
        ClientWindow w = full;
        hide(w);
        EXPECT_FALSE(coversScreen(w, screen, workArea));
    }

    ClientWindow maximized;
    maximized.viewable = true;
    maximized.frame = workArea;
    EXPECT_FALSE(coversScreen(maximized, screen, workArea));  // not maximized: the panel shows the picture
    maximized.maximizedVert = true;
    EXPECT_FALSE(coversScreen(maximized, screen, workArea));
    maximized.maximizedHorz = true;
    EXPECT_TRUE(coversScreen(maximized, screen, workArea));
    // Maximized on the other screen of a wide work area.
    const QRect wide(0, 32, 2560, 688);
    EXPECT_TRUE(coversScreen(maximized, screen, wide));
    EXPECT_FALSE(coversScreen(maximized, QRect(1280, 0, 1280, 720), wide));

    ClientWindow other = maximized;
    other.maximizedHorz = false;
    EXPECT_TRUE(screenCovered({other, maximized}, screen, workArea));
    EXPECT_FALSE(screenCovered({other}, screen, workArea));
    EXPECT_FALSE(screenCovered({}, screen, workArea));
}

}  // namespace
}  // namespace quellton
