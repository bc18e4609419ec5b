#include "WindowOverlay.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cstdio>

#include "ShaderLibrary.h"

namespace quellton {

namespace {

// Window pixel (x, y from the bottom) shows layer pixel (x, row from the top).
constexpr const char* overlayFragment = R"(#version 330 core
uniform sampler2D layer;
uniform int windowHeight;
out vec4 fragColor;
void main() {
    ivec2 at = ivec2(int(gl_FragCoord.x), windowHeight - 1 - int(gl_FragCoord.y));
    ivec2 size = textureSize(layer, 0);
    fragColor = (at.x < size.x && at.y >= 0 && at.y < size.y) ? texelFetch(layer, at, 0) : vec4(0.0);
}
)";

}  // namespace

void WindowOverlay::reset(int width, int height) {
    std::lock_guard guard(lock_);
    width_ = std::max(0, width);
    height_ = std::max(0, height);
    image_.assign(std::size_t(width_) * std::size_t(height_), 0);
    dirty_ = QRect(0, 0, width_, height_);
    resized_ = true;
    changed_ = true;
}

void WindowOverlay::write(const QRect& rect, std::span<const std::uint32_t> pixels) {
    if (pixels.size() < std::size_t(std::max(0, rect.width())) * std::size_t(std::max(0, rect.height()))) return;
    std::lock_guard guard(lock_);
    const QRect clipped = rect.intersected(QRect(0, 0, width_, height_));
    if (clipped.isEmpty()) return;
    for (int y = clipped.top(); y <= clipped.bottom(); ++y) {
        const std::uint32_t* from = pixels.data() + std::size_t(y - rect.top()) * std::size_t(rect.width()) +
                                    std::size_t(clipped.left() - rect.left());
        std::copy_n(from, clipped.width(), image_.data() + std::size_t(y) * std::size_t(width_) + std::size_t(clipped.left()));
    }
    dirty_ = dirty_.united(clipped);
    changed_ = true;
}

QSize WindowOverlay::size() const {
    std::lock_guard guard(lock_);
    return {width_, height_};
}

std::uint32_t WindowOverlay::pixel(int x, int y) const {
    std::lock_guard guard(lock_);
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return 0;
    return image_[std::size_t(y) * std::size_t(width_) + std::size_t(x)];
}

bool WindowOverlay::upload() {
    QRect dirty;
    bool resized = false;
    int width = 0, height = 0;
    {
        // Only the copy of the changed rows happens under the lock; the upload follows outside it.
        std::lock_guard guard(lock_);
        dirty = dirty_;
        resized = resized_;
        width = width_;
        height = height_;
        scratch_.resize(std::size_t(dirty.width()) * std::size_t(dirty.height()));
        for (int y = dirty.top(); y <= dirty.bottom(); ++y)
            std::copy_n(image_.data() + std::size_t(y) * std::size_t(width_) + std::size_t(dirty.left()), dirty.width(),
                        scratch_.data() + std::size_t(y - dirty.top()) * std::size_t(dirty.width()));
        dirty_ = QRect();
        resized_ = false;
        changed_ = false;
    }
    if (width == 0 || height == 0) {
        texture_.reset();
        textureWidth_ = textureHeight_ = 0;
        return false;
    }
    if (resized || !texture_ || textureWidth_ != width || textureHeight_ != height) {
        texture_ = makeTexture();
        glBindTexture(GL_TEXTURE_2D, texture_.id());
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        textureWidth_ = width;
        textureHeight_ = height;
    }
    glBindTexture(GL_TEXTURE_2D, texture_.id());
    if (!dirty.isEmpty()) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        glTexSubImage2D(GL_TEXTURE_2D, 0, dirty.x(), dirty.y(), dirty.width(), dirty.height(), GL_BGRA,
                        GL_UNSIGNED_INT_8_8_8_8_REV, scratch_.data());
    }
    return true;
}

void WindowOverlay::draw(int windowWidth, int windowHeight) {
    if (!upload()) return;
    if (!program_ && !programFailed_) {
        std::string log;
        const auto pipeline = ShaderLibrary::shared().linkFragment(overlayFragment, log);
        programFailed_ = !pipeline;
        if (pipeline) program_ = pipeline->program;
        else std::fprintf(stderr, "Quellton: Die Symbolebene kann nicht gezeichnet werden: %s\n", log.c_str());
    }
    if (!program_) return;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(0, 0, windowWidth, windowHeight);
    glUseProgram(program_);
    glUniform1i(glGetUniformLocation(program_, "windowHeight"), windowHeight);
    glUniform1i(glGetUniformLocation(program_, "layer"), 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, texture_.id());
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);  // premultiplied
    drawFullScreenTriangle();
    glDisable(GL_BLEND);
}

void WindowOverlay::releaseGpuResources() {
    texture_.reset();
    textureWidth_ = textureHeight_ = 0;
    if (program_) glDeleteProgram(program_);
    program_ = 0;
    programFailed_ = false;
    // The next draw uploads the whole layer again.
    std::lock_guard guard(lock_);
    dirty_ = QRect(0, 0, width_, height_);
    changed_ = width_ > 0;
}

}  // namespace quellton
