#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "IconLayerRules.h"

namespace quellton {

// The key colour the composite of an opaque icon layer removes: black, in which the layer's own
// label shadows vanish too (the matte draws them anew).
inline constexpr std::uint32_t backdropKeyColor = 0xff000000u;

// What the wallpaper changes in the icon managers' own settings while it runs, and gives back:
// the backdrop of an opaque icon layer becomes a solid key colour, and nemo is told to leave our
// desktop windows alone. Main thread only.
class IconManagerSettings {
public:
    virtual ~IconManagerSettings() = default;
    // At start: gives back what a run that ended without cleaning up left changed, and lets nemo
    // manage the desktop beside our windows.
    virtual void prepare() = 0;
    // The colour `manager` now paints as its backdrop (switching it first where needed), or nothing
    // when its backdrop cannot be switched.
    virtual std::optional<std::uint32_t> keyBackdrop(IconManager manager) = 0;
    // Gives `manager` its user's backdrop back.
    virtual void restoreBackdrop(IconManager manager) = 0;
    // When the wallpaper stops: gives everything back.
    virtual void finish() = 0;
};

// The session's real icon-manager settings, with what was taken kept in our settings file.
std::unique_ptr<IconManagerSettings> makeIconManagerSettings();

}  // namespace quellton
