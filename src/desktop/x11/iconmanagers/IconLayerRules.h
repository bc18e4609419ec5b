#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quellton {

// The programs that draw desktop icons in a window of their own.
enum class IconManager { xfdesktop, caja, nemo, pcmanfmQt, ding, plasmashell, unknown };

// From a window's class hint (instance and class name); nothing that names a desktop window counts.
IconManager recognizeIconManager(std::string_view instance, std::string_view className);
// The name a user knows the program by, for the log.
std::string iconManagerName(IconManager manager, std::string_view instance);
// Managers whose own backdrop can be switched to a key colour through the desktop's settings.
bool backdropKeyable(IconManager manager);

// Where our window goes relative to the icon layer, and what it shows.
enum class IconLayerRoute {
    below,          // the layer is see-through: directly below it
    ownAlpha,       // the layer has alpha but nobody composites it: above it, showing its pixels
    keyed,          // an opaque layer painting a key colour: above it, showing its pixels without the key
    blocked,        // an opaque layer with no way through: below it, drawing nothing
};

struct IconLayerFacts {
    IconManager manager = IconManager::unknown;
    bool alphaVisual = false;    // a 32-bit visual
    bool compositing = false;    // a compositing manager runs on the screen
    bool keyAvailable = false;   // the manager paints our key colour (or can be made to)
};
IconLayerRoute chooseRoute(const IconLayerFacts& facts);
// Our window sits above the icon layer and shows its pixels.
inline bool showsIconLayer(IconLayerRoute route) {
    return route == IconLayerRoute::ownAlpha || route == IconLayerRoute::keyed;
}

// Whether `ours` sits directly above (or below) `theirs` among the windows that can be seen on
// the screen, listed from the bottom to the top.
bool directlyAbove(const std::vector<std::uint32_t>& bottomToTop, std::uint32_t ours, std::uint32_t theirs);
bool directlyBelow(const std::vector<std::uint32_t>& bottomToTop, std::uint32_t ours, std::uint32_t theirs);

}  // namespace quellton
