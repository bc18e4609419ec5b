#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace quellton {

// Owns one OpenGL object name of the current share group or context; deletes it when destroyed.
class GlName {
public:
    using Deleter = void (*)(std::uint32_t);
    GlName() = default;
    GlName(std::uint32_t id, Deleter deleter) : id_(id), deleter_(deleter) {}
    GlName(GlName&& other) noexcept : id_(std::exchange(other.id_, 0)), deleter_(other.deleter_) {}
    GlName& operator=(GlName&& other) noexcept {
        if (this != &other) {
            reset();
            id_ = std::exchange(other.id_, 0);
            deleter_ = other.deleter_;
        }
        return *this;
    }
    ~GlName() { reset(); }

    std::uint32_t id() const { return id_; }
    explicit operator bool() const { return id_ != 0; }
    void reset() {
        // Without a current context (at exit) the name dies with its context.
        if (id_ && deleter_ && hasCurrentContext()) deleter_(id_);
        id_ = 0;
    }
    static bool hasCurrentContext();

private:
    std::uint32_t id_ = 0;
    Deleter deleter_ = nullptr;
};

GlName makeTexture();
GlName makeFramebuffer();
GlName makeBuffer();
GlName makeVertexArray();
GlName makeQuery();

// A 2-D texture of the given internal format with an attached framebuffer, ready to render into.
struct RenderTarget {
    GlName texture;
    GlName framebuffer;
    int width = 0, height = 0;

    // Nothing when the size is empty, too large, or the framebuffer is incomplete.
    static std::optional<RenderTarget> create(int width, int height, unsigned internalFormat);
    void bindForDrawing() const;
};

// Uniform buffers at bindings 0 (U) and 1 (S), refilled for every draw.
class UniformBuffers {
public:
    UniformBuffers();
    void upload(const void* uniforms, std::size_t uniformBytes, const void* spectrum, std::size_t spectrumBytes);

private:
    GlName uniforms_, spectrum_;
};

// One full-screen triangle with the currently bound pipeline.
void drawFullScreenTriangle();

}  // namespace quellton
