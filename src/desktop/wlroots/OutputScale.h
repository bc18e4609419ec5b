#pragma once

#include <QRect>
#include <QSize>

namespace quellton::wayland {

// An output's mode as the compositor reports it, in the pixels of the panel (before its transform).
struct OutputMode {
    QSize pixels;
    int transform = 0;  // wl_output.transform: odd values turn the output by 90 or 270 degrees
    int scale = 1;      // wl_output.scale, the integer the compositor rounds up to

    bool operator==(const OutputMode&) const = default;
};

// Where an output lies in the compositor's logical space, and its pixels.
struct OutputGeometry {
    QRect logical;
    OutputMode mode;

    bool operator==(const OutputGeometry&) const = default;
};

// The output's size in logical pixels when xdg-output does not tell it.
QSize logicalSize(const OutputMode& mode);
// Pixels per logical pixel, fractional where the compositor scales by a fraction; 0 when unknown.
double pixelsPerPoint(const OutputMode& mode, QSize logical);

// How a surface of a logical size is drawn at an output's full resolution.
struct BufferLayout {
    QSize pixels;           // the size of the buffers
    int bufferScale = 1;    // wl_surface.set_buffer_scale
    bool viewport = false;  // wp_viewport scales the buffer to the logical size

    bool operator==(const BufferLayout&) const = default;
};
BufferLayout bufferLayout(QSize logical, const OutputMode& mode, QSize outputLogical, bool haveViewporter);

}  // namespace quellton::wayland
