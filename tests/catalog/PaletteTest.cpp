#include <gtest/gtest.h>

#include "Palette.h"

using namespace quellton;

TEST(Palette, FourteenPalettesWithTheirIndexAsIdAndUtf8Names) {
    const auto& all = Palette::all();
    ASSERT_EQ(all.size(), 14u);
    for (std::size_t i = 0; i < all.size(); ++i) EXPECT_EQ(all[i].id, int(i));
    EXPECT_EQ(all[0].name, "Neonnacht");
    EXPECT_EQ(all[9].name, "Kirschblüte");
    EXPECT_EQ(all[9].name.size(), 12u);
    EXPECT_EQ(all[13].name, "Phosphor");
}

// The shaders see exactly the float a single-precision division gives.
TEST(Palette, StopsAreSinglePrecisionDivisions) {
    const Color3 c = Palette::all()[0].stops[0];  // #FF2FD0
    EXPECT_EQ(c.r, 1.0f);
    EXPECT_EQ(c.g, 47.0f / 255.0f);
    EXPECT_EQ(c.b, 208.0f / 255.0f);
    EXPECT_EQ(Palette::all()[10].stops[0], (Color3{1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(Palette::all()[13].stops[3], Palette::fromHex(0x3BFF6E));
    EXPECT_EQ(Palette::fromHex(0x000000), (Color3{0, 0, 0}));
}
