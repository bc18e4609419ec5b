#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quellton {

// What a desktop says about its look; nothing where it says nothing.
struct AppearanceHints {
    std::optional<bool> dark;
    std::optional<bool> reduceMotion;
};

// org.freedesktop.appearance color-scheme: 1 prefers dark, 2 prefers light, 0 (or anything else) no preference.
std::optional<bool> darkFromPortalScheme(std::uint32_t scheme);
// GNOME's color-scheme ("prefer-dark", "prefer-light", "default") and, for older desktops, a
// GTK theme whose name ends in "-dark" or ":dark".
std::optional<bool> darkFromGnome(std::string_view colorScheme, std::string_view gtkTheme);
// KDE's kdeglobals: the window background's brightness of the colour scheme, and
// [KDE] AnimationDurationFactor=0 for animations switched off.
AppearanceHints hintsFromKdeGlobals(std::string_view text);

// The first source that says something wins, in the order given.
AppearanceHints firstAnswers(std::initializer_list<AppearanceHints> sources);

}  // namespace quellton
