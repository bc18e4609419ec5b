#pragma once

#include <QRect>

#include <vector>

namespace quellton {

// What the window manager says about one top-level client window, in root-window pixels.
struct ClientWindow {
    QRect frame;  // with decorations
    bool viewable = false;
    bool minimized = false;
    bool normal = true;  // a normal application window, not a dock, desktop, menu or tooltip
    bool onCurrentDesktop = true;
    bool maximizedVert = false;
    bool maximizedHorz = false;

    bool operator==(const ClientWindow&) const = default;
};

// True when the window hides the whole screen: its frame covers the screen, or it is maximized
// both ways and covers the screen's part of the work area (panels may stay visible beside it).
bool coversScreen(const ClientWindow& window, const QRect& screen, const QRect& workArea);
bool screenCovered(const std::vector<ClientWindow>& windows, const QRect& screen, const QRect& workArea);

}  // namespace quellton
