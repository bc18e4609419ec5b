#include "OutputScale.h"

#include <algorithm>
#include <cmath>

namespace quellton::wayland {

namespace {

QSize upright(const OutputMode& mode) { return mode.transform % 2 ? mode.pixels.transposed() : mode.pixels; }

}  // namespace

QSize logicalSize(const OutputMode& mode) {
    const int scale = std::max(mode.scale, 1);
    const QSize pixels = upright(mode);
    return {pixels.width() / scale, pixels.height() / scale};
}

double pixelsPerPoint(const OutputMode& mode, QSize logical) {
    const QSize pixels = upright(mode);
    if (pixels.isEmpty() || logical.isEmpty()) return 0;
    return double(pixels.width()) / logical.width();
}

BufferLayout bufferLayout(QSize logical, const OutputMode& mode, QSize outputLogical, bool haveViewporter) {
    const int integer = std::max(mode.scale, 1);
    const double ratio = pixelsPerPoint(mode, outputLogical);
    // A fractional scale needs the viewporter; without it the compositor scales our integer buffer down.
    if (haveViewporter && ratio > 0 && std::abs(ratio - integer) > 1e-3) {
        const QSize pixels(std::max(1, int(std::lround(logical.width() * ratio))),
                           std::max(1, int(std::lround(logical.height() * ratio))));
        return {pixels, 1, true};
    }
    return {QSize(std::max(1, logical.width() * integer), std::max(1, logical.height() * integer)), integer, false};
}

}  // namespace quellton::wayland
