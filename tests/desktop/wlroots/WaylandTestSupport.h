#pragma once

#include <QImage>

#include "IconDesktop.h"

namespace quellton::test {

class NestedSway;

// The compositor that the tests of one binary share.
NestedSway& sway();

// The share of pixels whose colour is not the one at the top left: 0 for a flat desktop.
inline double nonFlatShare(const QImage& image, QRect area = {}) {
    if (image.isNull()) return 0;
    const QRect r = area.isNull() ? image.rect() : area;
    const QRgb flat = image.pixel(r.topLeft());
    long differing = 0;
    for (int y = r.top(); y <= r.bottom(); y += 2)
        for (int x = r.left(); x <= r.right(); x += 2) differing += image.pixel(x, y) != flat;
    return double(differing) / (double((r.width() + 1) / 2) * ((r.height() + 1) / 2));
}

}  // namespace quellton::test
