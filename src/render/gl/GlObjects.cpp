#include "GlObjects.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

namespace quellton {

bool GlName::hasCurrentContext() { return eglGetCurrentContext() != EGL_NO_CONTEXT; }

GlName makeTexture() {
    GLuint id = 0;
    glGenTextures(1, &id);
    return {id, [](std::uint32_t n) { glDeleteTextures(1, &n); }};
}

GlName makeFramebuffer() {
    GLuint id = 0;
    glGenFramebuffers(1, &id);
    return {id, [](std::uint32_t n) { glDeleteFramebuffers(1, &n); }};
}

GlName makeBuffer() {
    GLuint id = 0;
    glGenBuffers(1, &id);
    return {id, [](std::uint32_t n) { glDeleteBuffers(1, &n); }};
}

GlName makeVertexArray() {
    GLuint id = 0;
    glGenVertexArrays(1, &id);
    return {id, [](std::uint32_t n) { glDeleteVertexArrays(1, &n); }};
}

GlName makeQuery() {
    GLuint id = 0;
    glGenQueries(1, &id);
    return {id, [](std::uint32_t n) { glDeleteQueries(1, &n); }};
}

std::optional<RenderTarget> RenderTarget::create(int width, int height, unsigned internalFormat) {
    RenderTarget target;
    GLint maxSize = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxSize);
    if (width <= 0 || height <= 0 || width > maxSize || height > maxSize) return std::nullopt;
    target.texture = makeTexture();
    glBindTexture(GL_TEXTURE_2D, target.texture.id());
    const bool isFloat = internalFormat == GL_RGBA16F;
    glTexImage2D(GL_TEXTURE_2D, 0, GLint(internalFormat), width, height, 0, GL_RGBA, isFloat ? GL_HALF_FLOAT : GL_UNSIGNED_BYTE,
                 nullptr);
    // Feedback bodies sample their previous frame with linear filtering, clamped at the edges.
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glBindTexture(GL_TEXTURE_2D, 0);
    if (glGetError() != GL_NO_ERROR) return std::nullopt;
    target.framebuffer = makeFramebuffer();
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer.id());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target.texture.id(), 0);
    const bool complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    target.width = width;
    target.height = height;
    if (!complete) return std::nullopt;
    return target;
}

void RenderTarget::bindForDrawing() const {
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.id());
    glViewport(0, 0, width, height);
}

UniformBuffers::UniformBuffers() : uniforms_(makeBuffer()), spectrum_(makeBuffer()) {}

void UniformBuffers::upload(const void* uniforms, std::size_t uniformBytes, const void* spectrum, std::size_t spectrumBytes) {
    // Orphaning with glBufferData lets the driver keep earlier draws' data in flight.
    glBindBuffer(GL_UNIFORM_BUFFER, uniforms_.id());
    glBufferData(GL_UNIFORM_BUFFER, GLsizeiptr(uniformBytes), uniforms, GL_STREAM_DRAW);
    glBindBuffer(GL_UNIFORM_BUFFER, spectrum_.id());
    glBufferData(GL_UNIFORM_BUFFER, GLsizeiptr(spectrumBytes), spectrum, GL_STREAM_DRAW);
    glBindBuffer(GL_UNIFORM_BUFFER, 0);
    glBindBufferBase(GL_UNIFORM_BUFFER, 0, uniforms_.id());
    glBindBufferBase(GL_UNIFORM_BUFFER, 1, spectrum_.id());
}

void drawFullScreenTriangle() { glDrawArrays(GL_TRIANGLES, 0, 3); }

}  // namespace quellton
