#include <gtest/gtest.h>

#include "OutputScale.h"

namespace quellton::wayland {
namespace {

// Integer scales and 1.5 through the viewporter are seen on a real compositor in the Wayland tests;
// here the cases sway does not offer there.
TEST(OutputScale, WithoutTheViewporterAFractionalScaleUsesTheNextIntegerBuffer) {
    // 1.5: the compositor says scale 2 and a logical size of 1280 x 720 for a 1920 x 1080 panel.
    const OutputMode mode{QSize(1920, 1080), 0, 2};
    EXPECT_EQ(bufferLayout(QSize(1280, 720), mode, QSize(1280, 720), false), (BufferLayout{QSize(2560, 1440), 2, false}));
}

TEST(OutputScale, ATurnedOutputSwapsItsPanelsSides) {
    // A 1920 x 1080 panel turned by 90 degrees (transform 1 or 3) at 1.5 is 720 x 1280 logical pixels.
    for (int transform : {1, 3, 5, 7}) {
        const OutputMode mode{QSize(1920, 1080), transform, 2};
        EXPECT_DOUBLE_EQ(pixelsPerPoint(mode, QSize(720, 1280)), 1.5) << transform;
        EXPECT_EQ(bufferLayout(QSize(720, 1280), mode, QSize(720, 1280), true).pixels, QSize(1080, 1920)) << transform;
    }
    // Without xdg-output the logical size follows from the mode, turned and divided by the scale.
    EXPECT_EQ(logicalSize(OutputMode{QSize(1920, 1080), 3, 2}), QSize(540, 960));
    EXPECT_EQ(logicalSize(OutputMode{QSize(1920, 1080), 2, 1}), QSize(1920, 1080));
}

TEST(OutputScale, AnUnknownSizeFallsBackToTheIntegerScale) {
    EXPECT_EQ(pixelsPerPoint(OutputMode{QSize(1920, 1080), 0, 1}, QSize()), 0.0);
    EXPECT_EQ(bufferLayout(QSize(960, 540), OutputMode{QSize(), 0, 2}, QSize(), true),
              (BufferLayout{QSize(1920, 1080), 2, false}));
    // A scale the compositor never sent counts as 1.
    EXPECT_EQ(logicalSize(OutputMode{QSize(800, 600), 0, 0}), QSize(800, 600));
}

}  // namespace
}  // namespace quellton::wayland
