#pragma once

#include <QRect>

#include <cstdint>
#include <vector>

namespace quellton {

// 32-bit pixels as the X server and OpenGL's BGRA upload see them: 0xAARRGGBB in native order.
struct PixelView {
    const std::uint32_t* pixels = nullptr;
    int width = 0, height = 0;
    int stride = 0;  // pixels per row
    std::uint32_t at(int x, int y) const { return pixels[std::size_t(y) * std::size_t(stride) + std::size_t(x)]; }
};

// How the icon layer's own backdrop was keyed, and the label shadow the key took away.
struct MatteStyle {
    std::uint32_t key = 0xff000000u;
    // Icon managers draw a soft dark shadow under labels that vanishes in a dark key; it is drawn
    // anew from the coverage, scaled with the screen.
    int shadowRadius = 1;
    int shadowOffset = 1;
    float shadowStrength = 0.8f;

    static MatteStyle forScale(std::uint32_t key, double devicePixelRatio);
    // How far a result pixel depends on source pixels around it.
    int margin() const;
};

// Takes the icon layer's pixels painted over a solid key colour and returns them as premultiplied
// pixels (0xAARRGGBB) that look the same over any picture: the key becomes transparent, icons and
// labels stay opaque, their anti-aliased edges become partly transparent in their own colour, and
// a soft shadow lies under them. `source` must hold `area` grown by the style's margin, where the
// layer has pixels there.
//
// An edge pixel lies on the line from the key to the colour it covers. It counts as an edge only
// when a neighbour on that line is nearer the key; its coverage then comes from the farthest
// neighbour on the line. A pixel without such neighbours (the inside of an icon, or a grey line on
// white paper) stays opaque.
std::vector<std::uint32_t> matteKeyed(const PixelView& source, const QRect& area, const MatteStyle& style);

// Pixels of a layer with its own alpha (a 32-bit visual) are premultiplied already: only copied.
std::vector<std::uint32_t> copyArea(const PixelView& source, const QRect& area);

}  // namespace quellton
