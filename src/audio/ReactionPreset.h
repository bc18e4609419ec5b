#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quellton {

// How strongly the picture reacts to music; the model stores only the strength.
enum class ReactionPreset { calm, normal, strong, extreme };

inline constexpr std::array<ReactionPreset, 4> allReactionPresets = {
    ReactionPreset::calm, ReactionPreset::normal, ReactionPreset::strong, ReactionPreset::extreme};

std::string_view presetLabel(ReactionPreset p);
double presetStrength(ReactionPreset p);
std::optional<ReactionPreset> presetFromLabel(std::string_view label);
// The closest preset; a tie goes to the weaker one.
ReactionPreset nearestPreset(double strength);

}  // namespace quellton
