#include "IconMatte.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace quellton {

namespace {

// How far from a pixel the neighbours on its key line are searched.
constexpr int edgeRadius = 2;

using Rgb = std::array<int, 3>;

Rgb channels(std::uint32_t pixel) {
    return {int((pixel >> 16) & 0xff), int((pixel >> 8) & 0xff), int(pixel & 0xff)};
}

Rgb minus(const Rgb& a, const Rgb& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

int dot(const Rgb& a, const Rgb& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

// Where q (a neighbour, relative to the key) lies on the line from the key through d (the pixel,
// relative to the key), in multiples of d; nothing when it is off the line. The pixel's rounding of
// half a step grows with the distance along the line, so the band widens with it.
std::optional<double> alongLine(const Rgb& q, const Rgb& d, int dd) {
    const double s = double(dot(q, d)) / dd;
    if (s < -0.05) return std::nullopt;
    const double tolerance = 1.5 + 0.75 * std::max(s, 1.0);
    for (int c = 0; c < 3; ++c)
        if (std::abs(q[c] - s * d[c]) > tolerance) return std::nullopt;
    return s;
}

std::uint32_t premultiplied(const Rgb& key, const Rgb& d, double coverage) {
    if (coverage >= 1.0) {
        return 0xff000000u | std::uint32_t(key[0] + d[0]) << 16 | std::uint32_t(key[1] + d[1]) << 8 |
               std::uint32_t(key[2] + d[2]);
    }
    std::uint32_t out = std::uint32_t(std::lround(coverage * 255.0)) << 24;
    for (int c = 0; c < 3; ++c) {
        // The covered colour, extended from the key through the pixel, weighted by its coverage.
        const double covered = std::clamp(key[c] + d[c] / coverage, 0.0, 255.0);
        out |= std::uint32_t(std::clamp(std::lround(covered * coverage), 0L, 255L)) << (8 * (2 - c));
    }
    return out;
}

std::uint32_t mattePixel(const PixelView& source, int x, int y, const Rgb& key) {
    const Rgb d = minus(channels(source.at(x, y)), key);
    const int dd = dot(d, d);
    if (dd == 0) return 0;
    bool nearerKey = false;
    double farthest = 1.0;
    const int x0 = std::max(0, x - edgeRadius), x1 = std::min(source.width - 1, x + edgeRadius);
    const int y0 = std::max(0, y - edgeRadius), y1 = std::min(source.height - 1, y + edgeRadius);
    for (int ny = y0; ny <= y1; ++ny) {
        for (int nx = x0; nx <= x1; ++nx) {
            const std::optional<double> s = alongLine(minus(channels(source.at(nx, ny)), key), d, dd);
            if (!s) continue;
            if (*s < 0.9) nearerKey = true;
            farthest = std::max(farthest, *s);
        }
    }
    return premultiplied(key, d, nearerKey ? 1.0 / farthest : 1.0);
}

// A plane of floats over a rectangle, for the shadow's blur.
struct Plane {
    QRect rect;
    std::vector<float> values;
    float at(int x, int y) const {
        if (!rect.contains(x, y)) return 0;
        return values[std::size_t(y - rect.top()) * std::size_t(rect.width()) + std::size_t(x - rect.left())];
    }
};

// One pass of a box blur along one axis.
Plane boxBlur(const Plane& in, int radius, bool horizontal) {
    Plane out{in.rect, std::vector<float>(in.values.size())};
    const float scale = 1.0f / float(2 * radius + 1);
    std::size_t i = 0;
    for (int y = in.rect.top(); y <= in.rect.bottom(); ++y)
        for (int x = in.rect.left(); x <= in.rect.right(); ++x, ++i) {
            float sum = 0;
            for (int k = -radius; k <= radius; ++k) sum += horizontal ? in.at(x + k, y) : in.at(x, y + k);
            out.values[i] = sum * scale;
        }
    return out;
}

std::uint32_t withShadow(std::uint32_t pixel, float shadow) {
    const float alpha = float(pixel >> 24) / 255.0f;
    const float combined = alpha + (1.0f - alpha) * std::min(shadow, 1.0f);
    return (pixel & 0x00ffffffu) | std::uint32_t(std::lround(combined * 255.0f)) << 24;
}

}  // namespace

MatteStyle MatteStyle::forScale(std::uint32_t key, double devicePixelRatio) {
    MatteStyle style;
    style.key = key;
    const int scale = std::max(1, int(std::lround(devicePixelRatio)));
    style.shadowRadius *= scale;
    style.shadowOffset *= scale;
    return style;
}

int MatteStyle::margin() const { return edgeRadius + 2 * shadowRadius + shadowOffset; }

std::vector<std::uint32_t> matteKeyed(const PixelView& source, const QRect& area, const MatteStyle& style) {
    const QRect bounds(0, 0, source.width, source.height);
    // The shadow under the area comes from coverage up and left of it, blurred twice.
    const int reach = 2 * style.shadowRadius + style.shadowOffset;
    Plane coverage{area.adjusted(-reach, -reach, reach, reach), {}};
    std::vector<std::uint32_t> matted(std::size_t(coverage.rect.width()) * std::size_t(coverage.rect.height()), 0);
    const Rgb key = channels(style.key);
    std::size_t i = 0;
    for (int y = coverage.rect.top(); y <= coverage.rect.bottom(); ++y)
        for (int x = coverage.rect.left(); x <= coverage.rect.right(); ++x, ++i)
            if (bounds.contains(x, y)) matted[i] = mattePixel(source, x, y, key);

    coverage.values.resize(matted.size());
    for (std::size_t j = 0; j < matted.size(); ++j) coverage.values[j] = float(matted[j] >> 24) / 255.0f;
    for (int pass = 0; pass < 2; ++pass)
        coverage = boxBlur(boxBlur(coverage, style.shadowRadius, true), style.shadowRadius, false);

    std::vector<std::uint32_t> out(std::size_t(area.width()) * std::size_t(area.height()));
    std::size_t o = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x, ++o) {
            const std::size_t m = std::size_t(y - coverage.rect.top()) * std::size_t(coverage.rect.width()) +
                                  std::size_t(x - coverage.rect.left());
            const float shadow = coverage.at(x - style.shadowOffset, y - style.shadowOffset) * style.shadowStrength;
            out[o] = withShadow(matted[m], shadow);
        }
    return out;
}

std::vector<std::uint32_t> copyArea(const PixelView& source, const QRect& area) {
    const QRect clipped = area.intersected(QRect(0, 0, source.width, source.height));
    std::vector<std::uint32_t> out(std::size_t(std::max(0, area.width())) * std::size_t(std::max(0, area.height())), 0);
    for (int y = clipped.top(); y <= clipped.bottom(); ++y)
        for (int x = clipped.left(); x <= clipped.right(); ++x)
            out[std::size_t(y - area.top()) * std::size_t(area.width()) + std::size_t(x - area.left())] = source.at(x, y);
    return out;
}

}  // namespace quellton
