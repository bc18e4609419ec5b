#pragma once

#include <cstdint>

namespace quellton {

// A linked program with the target format and blending its visualization needs.
struct Pipeline {
    std::uint32_t program = 0;
    // Feedback pipelines draw into RGBA16F without blending; the others into RGBA8 with source-alpha blending.
    bool feedback = false;

    // Makes this pipeline current in the calling thread's context.
    void bind() const;
    bool operator==(const Pipeline&) const = default;
};

}  // namespace quellton
