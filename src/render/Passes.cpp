#include "Passes.h"

#include <epoxy/gl.h>

namespace quellton {

void drawPass(const Pipeline& pipeline, UniformBuffers& buffers, const Uniforms& u, const SpectrumArray& s) {
    buffers.upload(&u, sizeof u, s.data(), sizeof s);
    pipeline.bind();
    drawFullScreenTriangle();
}

void feedbackPass(const Pipeline& pipeline, FeedbackBuffers& fb, UniformBuffers& buffers, Uniforms u,
                  const SpectrumArray& s) {
    u.rt[3] = 1.0f;
    fb.target().bindForDrawing();
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, fb.previous().texture.id());
    drawPass(pipeline, buffers, u, s);
    fb.flip();
}

void finalPass(const Pipeline& own, const Pipeline& present, const FeedbackBuffers* fb, UniformBuffers& buffers,
               const Uniforms& u, const SpectrumArray& s) {
    if (!fb) {
        drawPass(own, buffers, u, s);
        return;
    }
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, fb->previous().texture.id());  // the texture the last pass wrote
    drawPass(present, buffers, u, s);
}

}  // namespace quellton
