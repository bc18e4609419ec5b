#pragma once

#include <QList>
#include <QMargins>
#include <QRect>
#include <QSize>

#include <optional>

namespace quellton {

struct Placement {
    QRect geometry;  // the window's content, as Qt places windows
    QSize minimum;   // the minimum size, lowered where the screen has less room
};

// Where the gallery opens: its remembered place and size where that still shows on a screen, grown
// to the minimum; otherwise the first size centred on the primary screen. Either way the window with
// the window manager's `frame` around it lies inside that screen's available area (its work area),
// shrunk where the area is smaller, so its title bar and its bottom can always be reached.
Placement windowPlacement(std::optional<QRect> remembered, const QList<QRect>& screens, QRect primary, QSize minimum,
                          QSize first, QMargins frame);

}  // namespace quellton
