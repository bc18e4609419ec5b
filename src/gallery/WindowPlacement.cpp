#include "WindowPlacement.h"

#include <algorithm>

namespace quellton {

namespace {
// Enough of the window on a screen to grab its title bar and move it back.
constexpr int reachableWidth = 120, reachableHeight = 40;
}  // namespace

QRect windowPlacement(std::optional<QRect> remembered, const QList<QRect>& screens, QRect primary, QSize minimum,
                      QSize first) {
    if (remembered && remembered->isValid()) {
        const QRect rect(remembered->topLeft(), remembered->size().expandedTo(minimum));
        const bool reachable = std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
            const QRect seen = screen.intersected(QRect(rect.topLeft(), QSize(rect.width(), reachableHeight)));
            return seen.width() >= reachableWidth && seen.height() >= reachableHeight / 2;
        });
        if (reachable) return rect;
    }
    const QSize size = first.boundedTo(primary.size()).expandedTo(minimum);
    QRect rect(QPoint(0, 0), size);
    rect.moveCenter(primary.center());
    return rect;
}

}  // namespace quellton
