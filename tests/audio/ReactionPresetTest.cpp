#include <gtest/gtest.h>

#include "ReactionPreset.h"

using namespace quellton;

TEST(ReactionPreset, LabelsStrengthsAndTheNearestWithTiesToTheWeaker) {
    EXPECT_EQ(presetFromLabel("Ruhig"), ReactionPreset::calm);
    EXPECT_EQ(presetFromLabel("ruhig"), std::nullopt);
    EXPECT_EQ(presetFromLabel(""), std::nullopt);
    const double strengths[] = {0.35, 1.0, 1.6, 2.4};
    const char* labels[] = {"Ruhig", "Normal", "Stark", "Extrem"};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(presetStrength(allReactionPresets[i]), strengths[i]);
        EXPECT_EQ(presetLabel(allReactionPresets[i]), labels[i]);
        EXPECT_EQ(presetFromLabel(labels[i]), allReactionPresets[i]);
        EXPECT_EQ(nearestPreset(strengths[i]), allReactionPresets[i]);
    }
    EXPECT_EQ(nearestPreset(0), ReactionPreset::calm);
    EXPECT_EQ(nearestPreset(1.05), ReactionPreset::normal);
    EXPECT_EQ(nearestPreset(1.3), ReactionPreset::normal);  // exactly halfway between 1.0 and 1.6
    EXPECT_EQ(nearestPreset(1.31), ReactionPreset::strong);
    EXPECT_EQ(nearestPreset(2.5), ReactionPreset::extreme);
    EXPECT_EQ(nearestPreset(100), ReactionPreset::extreme);
}
