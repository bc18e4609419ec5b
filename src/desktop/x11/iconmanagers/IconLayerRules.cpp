#include "IconLayerRules.h"

#include <algorithm>
#include <cctype>

namespace quellton {

namespace {

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

std::ptrdiff_t position(const std::vector<std::uint32_t>& order, std::uint32_t window) {
    const auto it = std::ranges::find(order, window);
    return it == order.end() ? -1 : it - order.begin();
}

}  // namespace

IconManager recognizeIconManager(std::string_view instance, std::string_view className) {
    const auto is = [&](std::string_view name) {
        return equalsIgnoringCase(instance, name) || equalsIgnoringCase(className, name);
    };
    if (is("xfdesktop")) return IconManager::xfdesktop;
    // caja names its desktop window "desktop_window" with the class of the program.
    if (is("caja")) return IconManager::caja;
    if (is("nemo-desktop")) return IconManager::nemo;
    if (is("pcmanfm-qt")) return IconManager::pcmanfmQt;
    // Desktop Icons NG, a helper process of GNOME Shell's extension, under its old and new application ids.
    if (is("ding") || is("com.rastersoft.ding") || is("com.desktop.ding")) return IconManager::ding;
    if (is("plasmashell")) return IconManager::plasmashell;
    return IconManager::unknown;
}

std::string iconManagerName(IconManager manager, std::string_view instance) {
    switch (manager) {
    case IconManager::xfdesktop: return "xfdesktop";
    case IconManager::caja: return "caja";
    case IconManager::nemo: return "nemo-desktop";
    case IconManager::pcmanfmQt: return "pcmanfm-qt";
    case IconManager::ding: return "Desktop Icons NG";
    case IconManager::plasmashell: return "plasmashell";
    case IconManager::unknown: break;
    }
    return instance.empty() ? std::string("unbekannt") : std::string(instance);
}

bool backdropKeyable(IconManager manager) {
    return manager == IconManager::xfdesktop || manager == IconManager::caja || manager == IconManager::pcmanfmQt ||
           manager == IconManager::plasmashell;
}

IconLayerRoute chooseRoute(const IconLayerFacts& facts) {
    if (facts.alphaVisual) return facts.compositing ? IconLayerRoute::below : IconLayerRoute::ownAlpha;
    if (backdropKeyable(facts.manager) && facts.keyAvailable) return IconLayerRoute::keyed;
    return IconLayerRoute::blocked;
}

bool directlyAbove(const std::vector<std::uint32_t>& bottomToTop, std::uint32_t ours, std::uint32_t theirs) {
    const std::ptrdiff_t a = position(bottomToTop, ours), b = position(bottomToTop, theirs);
    return a >= 0 && b >= 0 && a == b + 1;
}

bool directlyBelow(const std::vector<std::uint32_t>& bottomToTop, std::uint32_t ours, std::uint32_t theirs) {
    return directlyAbove(bottomToTop, theirs, ours);
}

}  // namespace quellton
