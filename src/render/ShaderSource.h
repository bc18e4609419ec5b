#pragma once

#include <string>
#include <string_view>

#include "Visualizer.h"

namespace quellton::ShaderSource {

// Shared head of every fragment shader: uniform blocks, macros and helpers. Ends with a closing
// brace and no newline, so a body starts directly after it.
extern const std::string_view prelude;
// Fragment entries that call vis(p, uv) or vis(p, uv, prev); each begins with a newline.
extern const std::string fragmentPlain;
extern const std::string fragmentFeedback;
// Shows a feedback texture with the same vignette, dither and alpha as a plain entry.
const std::string& presentSource();
// The one vertex stage: three vertices from gl_VertexID that cover the whole target.
extern const std::string_view vertex;

// prelude + body + the entry the visualization needs, with nothing between them.
std::string assemble(const Visualizer& v);

}  // namespace quellton::ShaderSource
