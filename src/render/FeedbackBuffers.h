#pragma once

#include <array>

#include "gl/GlObjects.h"

namespace quellton {

// The ping-pong pair of one feedback visualization: `index` is written next, the other holds the previous frame.
struct FeedbackBuffers {
    std::array<RenderTarget, 2> textures;
    double width = 0, height = 0;
    int index = 0;

    const RenderTarget& target() const { return textures[index]; }
    const RenderTarget& previous() const { return textures[1 - index]; }
    void flip() { index = 1 - index; }
};

}  // namespace quellton
