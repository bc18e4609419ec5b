#include "Coverage.h"

#include <algorithm>

namespace quellton {

bool coversScreen(const ClientWindow& window, const QRect& screen, const QRect& workArea) {
    if (!window.viewable || window.minimized || !window.normal || !window.onCurrentDesktop) return false;
    if (screen.isEmpty()) return false;
    if (window.frame.contains(screen)) return true;
    if (!(window.maximizedVert && window.maximizedHorz)) return false;
    const QRect usable = screen.intersected(workArea);
    return !usable.isEmpty() && window.frame.contains(usable);
}

bool screenCovered(const std::vector<ClientWindow>& windows, const QRect& screen, const QRect& workArea) {
    return std::ranges::any_of(windows, [&](const ClientWindow& w) { return coversScreen(w, screen, workArea); });
}

}  // namespace quellton
