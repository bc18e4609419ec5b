#pragma once

#include <QImage>
#include <QSize>

#include <cstddef>
#include <cstdint>

namespace quellton::plasma {

// Copies a frame into a stream buffer of `size` in BGRx with rows of size.width() * 4 bytes, as many
// rows as fit into `capacity`; a frame of another size is scaled first (the renderer may draw below
// the screen's resolution). Returns the bytes written.
std::size_t copyFrame(const QImage& frame, QSize size, std::uint8_t* to, std::size_t capacity);

}  // namespace quellton::plasma
