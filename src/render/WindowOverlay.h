#pragma once

#include <QRect>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

#include "gl/GlObjects.h"

namespace quellton {

// Pixels drawn over a canvas's picture at the window's full resolution, such as the desktop's
// icons. Premultiplied 0xAARRGGBB, top row first, in window pixels. The main thread writes what
// changed; the render thread uploads the changes and draws the layer over every frame it shows.
class WindowOverlay {
public:
    // Starts over with a transparent layer of this size; an empty size draws nothing.
    void reset(int width, int height);
    // Replaces a rectangle (pixels row by row, rect.width() per row), clipped to the layer.
    void write(const QRect& rect, std::span<const std::uint32_t> pixels);
    // Something changed that the window does not show yet.
    bool changed() const { return changed_; }
    // The layer's size and one of its pixels, for diagnostics; 0 outside.
    QSize size() const;
    std::uint32_t pixel(int x, int y) const;

    // Render thread, with the window's framebuffer bound: uploads the changes and blends the layer.
    void draw(int windowWidth, int windowHeight);
    // Render thread, with its context current.
    void releaseGpuResources();

private:
    bool upload();

    mutable std::mutex lock_;
    std::vector<std::uint32_t> image_;
    int width_ = 0, height_ = 0;
    QRect dirty_;
    bool resized_ = false;
    std::atomic<bool> changed_{false};

    // Render thread only.
    GlName texture_;
    int textureWidth_ = 0, textureHeight_ = 0;
    std::uint32_t program_ = 0;
    bool programFailed_ = false;
    std::vector<std::uint32_t> scratch_;
};

}  // namespace quellton
