#include "ReactionPreset.h"

#include <cmath>

namespace quellton {

namespace {
struct PresetData {
    std::string_view label;
    double strength;
};
constexpr std::array<PresetData, 4> presets = {{{"Ruhig", 0.35}, {"Normal", 1.0}, {"Stark", 1.6}, {"Extrem", 2.4}}};
}  // namespace

std::string_view presetLabel(ReactionPreset p) { return presets[std::size_t(p)].label; }
double presetStrength(ReactionPreset p) { return presets[std::size_t(p)].strength; }

std::optional<ReactionPreset> presetFromLabel(std::string_view label) {
    for (ReactionPreset p : allReactionPresets)
        if (presetLabel(p) == label) return p;
    return std::nullopt;
}

ReactionPreset nearestPreset(double x) {
    ReactionPreset best = ReactionPreset::calm;
    for (ReactionPreset p : allReactionPresets)
        if (std::abs(presetStrength(p) - x) < std::abs(presetStrength(best) - x)) best = p;
    return best;
}

}  // namespace quellton
