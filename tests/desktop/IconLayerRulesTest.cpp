#include <gtest/gtest.h>

#include "IconLayerRules.h"

namespace quellton {
namespace {

TEST(IconLayerRules, RecognisesTheIconManagersByTheirWindowClass) {
    // The class hints their desktop windows carry.
    EXPECT_EQ(recognizeIconManager("xfdesktop", "Xfdesktop"), IconManager::xfdesktop);
    EXPECT_EQ(recognizeIconManager("desktop_window", "Caja"), IconManager::caja);
    EXPECT_EQ(recognizeIconManager("nemo-desktop", "Nemo-desktop"), IconManager::nemo);
    EXPECT_EQ(recognizeIconManager("pcmanfm-qt", "pcmanfm-qt"), IconManager::pcmanfmQt);
    EXPECT_EQ(recognizeIconManager("plasmashell", "plasmashell"), IconManager::plasmashell);
    EXPECT_EQ(recognizeIconManager("ding", "Ding"), IconManager::ding);
    EXPECT_EQ(recognizeIconManager("com.rastersoft.ding", ""), IconManager::ding);
    // Nautilus's old desktop shares caja's instance name but is not caja; a look-alike name is nobody.
    EXPECT_EQ(recognizeIconManager("desktop_window", "Nautilus"), IconManager::unknown);
    EXPECT_EQ(recognizeIconManager("xfdesktop-settings", "Xfdesktop-settings"), IconManager::unknown);
    EXPECT_EQ(recognizeIconManager("", ""), IconManager::unknown);

    EXPECT_EQ(iconManagerName(IconManager::unknown, "spacefm"), "spacefm");
    EXPECT_EQ(iconManagerName(IconManager::caja, "desktop_window"), "caja");
}

TEST(IconLayerRules, SeeThroughLayersGoAboveOpaqueOnesAreKeyedOrBlock) {
    const auto route = [](IconManager manager, bool alpha, bool compositing, bool key) {
        return chooseRoute({manager, alpha, compositing, key});
    };
    // nemo and DING are see-through wherever something composites them.
    EXPECT_EQ(route(IconManager::nemo, true, true, false), IconLayerRoute::below);
    EXPECT_EQ(route(IconManager::ding, true, true, false), IconLayerRoute::below);
    // Nobody composites: their transparent parts show black, but their own alpha is readable.
    EXPECT_EQ(route(IconManager::nemo, true, false, false), IconLayerRoute::ownAlpha);
    EXPECT_EQ(route(IconManager::unknown, true, false, false), IconLayerRoute::ownAlpha);
    // Opaque layers: keyed where their backdrop can be switched, with or without a compositor.
    for (IconManager m : {IconManager::xfdesktop, IconManager::caja, IconManager::pcmanfmQt, IconManager::plasmashell}) {
        EXPECT_EQ(route(m, false, false, true), IconLayerRoute::keyed);
        EXPECT_EQ(route(m, false, true, true), IconLayerRoute::keyed);
        EXPECT_EQ(route(m, false, false, false), IconLayerRoute::blocked);
    }
    // An opaque layer nobody can key blocks, whatever is claimed about its key.
    EXPECT_EQ(route(IconManager::unknown, false, true, true), IconLayerRoute::blocked);
    EXPECT_EQ(route(IconManager::nemo, false, true, true), IconLayerRoute::blocked);
}

TEST(IconLayerRules, DirectlyMeansNeighboursAmongTheVisibleWindows) {
    const std::vector<std::uint32_t> order{10, 20, 30, 40};  // bottom to top
    EXPECT_TRUE(directlyAbove(order, 30, 20));
    EXPECT_FALSE(directlyAbove(order, 40, 20));  // a window between
    EXPECT_FALSE(directlyAbove(order, 10, 20));  // below, not above
    EXPECT_TRUE(directlyBelow(order, 10, 20));
    EXPECT_FALSE(directlyBelow(order, 20, 20));
    EXPECT_FALSE(directlyAbove(order, 50, 40));  // not visible at all
    EXPECT_FALSE(directlyBelow({}, 1, 2));
}

}  // namespace
}  // namespace quellton
