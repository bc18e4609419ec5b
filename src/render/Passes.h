#pragma once

#include "FeedbackBuffers.h"
#include "Pipeline.h"
#include "Uniforms.h"

namespace quellton {

// One full-screen draw of a pipeline with its uniform block and spectrum, into the bound target.
void drawPass(const Pipeline& pipeline, UniformBuffers& buffers, const Uniforms& u, const SpectrumArray& s);
// One feedback pass: the pipeline reads the previous texture, writes the other one at alpha 1, then the pair flips.
void feedbackPass(const Pipeline& pipeline, FeedbackBuffers& fb, UniformBuffers& buffers, Uniforms u,
                  const SpectrumArray& s);
// A layer's picture into the bound target: plain pipelines directly, feedback through the present pipeline.
void finalPass(const Pipeline& own, const Pipeline& present, const FeedbackBuffers* fb, UniformBuffers& buffers,
               const Uniforms& u, const SpectrumArray& s);

}  // namespace quellton
