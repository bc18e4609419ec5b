#pragma once

#include <QPoint>
#include <QPointF>

#include <cstddef>
#include <vector>

#include "FrameInputs.h"

namespace quellton {

// The screens that get a wallpaper: all in the system's order, or only the first (the primary).
template <typename Screen>
std::vector<Screen> keptScreens(std::vector<Screen> screens, bool allScreens) {
    if (!allScreens && screens.size() > 1) screens.resize(1);
    return screens;
}

// Windows are rebuilt only when the screen frames really changed, or when there are none.
inline bool layoutUnchanged(const std::vector<RectF>& layout, const std::vector<RectF>& frames, bool haveWindows) {
    return haveWindows && layout == frames;
}

// A wallpaper stops drawing while nobody can see it.
inline bool wallpaperHidden(bool screensAsleep, bool locked, bool covered) {
    return screensAsleep || locked || covered;
}

// The indices of the frames that contain the point (lower edges in, upper edges out).
std::vector<std::size_t> framesContaining(const std::vector<RectF>& frames, double x, double y);

// A pointer pixel of the root window in Qt's global coordinates: the centre of that pixel, so a
// press on the first row of a screen belongs to that screen and not to the one above it.
QPointF pixelToGlobal(QPoint rootPixel, double devicePixelRatio);

// A frame in Qt's global coordinates (top left, y down) in the renderers' coordinates, given
// the mapping of points that Canvas::toBottomUp applies.
template <typename ToBottomUp>
RectF bottomUpFrame(double x, double y, double width, double height, ToBottomUp toBottomUp) {
    const QPointF bottomLeft = toBottomUp(QPointF(x, y + height));
    return {bottomLeft.x(), bottomLeft.y(), width, height};
}

}  // namespace quellton
