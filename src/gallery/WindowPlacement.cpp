#include "WindowPlacement.h"

#include <algorithm>

namespace quellton {

namespace {

constexpr int reachableWidth = 120, reachableHeight = 40;

// Whether enough of the window's top strip shows on the screen to take it with the mouse.
bool reachableOn(const QRect& screen, const QRect& rect) {
    const QRect seen = screen.intersected(QRect(rect.topLeft(), QSize(rect.width(), reachableHeight)));
    return seen.width() >= reachableWidth && seen.height() >= reachableHeight / 2;
}

// The frame-included rectangle moved (and shrunk) into the area.
QRect within(QRect outer, const QRect& area) {
    outer.setSize(outer.size().boundedTo(area.size()));
    outer.moveLeft(std::clamp(outer.left(), area.left(), area.right() + 1 - outer.width()));
    outer.moveTop(std::clamp(outer.top(), area.top(), area.bottom() + 1 - outer.height()));
    return outer;
}

}  // namespace

Placement windowPlacement(std::optional<QRect> remembered, const QList<QRect>& screens, QRect primary, QSize minimum,
                          QSize first, QMargins frame) {
    QRect area = primary;
    std::optional<QRect> content;
    if (remembered && remembered->isValid()) {
        const auto home = std::find_if(screens.begin(), screens.end(),
                                       [&](const QRect& screen) { return reachableOn(screen, *remembered); });
        if (home != screens.end()) {
            area = *home;
            content = QRect(remembered->topLeft(), remembered->size().expandedTo(minimum));
        }
    }
    const QSize room = area.size().shrunkBy(frame);
    const QSize lowest = minimum.boundedTo(room);
    if (!content) {
        content = QRect(QPoint(0, 0), first.boundedTo(room).expandedTo(lowest));
        content->moveCenter(area.center());
    }
    const QRect outer = within(content->marginsAdded(frame), area);
    return {outer.marginsRemoved(frame), lowest};
}

}  // namespace quellton
