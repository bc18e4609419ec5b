#include "FrameCopy.h"

#include <algorithm>
#include <cstring>

namespace quellton::plasma {

std::size_t copyFrame(const QImage& source, QSize size, std::uint8_t* to, std::size_t capacity) {
    if (source.isNull() || size.isEmpty()) return 0;
    QImage frame = source;
    if (frame.size() != size) frame = frame.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    // Format_RGB32 lies in memory as B, G, R, x on little-endian machines: BGRx as it is.
    if (frame.format() != QImage::Format_RGB32) frame = frame.convertToFormat(QImage::Format_RGB32);
    const std::size_t stride = std::size_t(size.width()) * 4;
    const std::size_t rows = std::min(std::size_t(size.height()), capacity / stride);
    for (std::size_t y = 0; y < rows; ++y) std::memcpy(to + y * stride, frame.constScanLine(int(y)), stride);
    return rows * stride;
}

}  // namespace quellton::plasma
