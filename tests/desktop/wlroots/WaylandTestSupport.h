#pragma once

#include <QImage>
#include <QString>

#include <cstdlib>
#include <string>

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

// Keeps a screenshot for people to look at when QUELLTON_SHOTS names a folder.
inline void keepShot(const QImage& image, const char* name) {
    if (const char* dir = std::getenv("QUELLTON_SHOTS"))
        image.save(QString::fromUtf8(dir) + QStringLiteral("/") + QString::fromUtf8(name) + QStringLiteral(".png"));
}

}  // namespace quellton::test
