#pragma once

#include "VisualRenderer.h"

namespace quellton {

// The live sources of a renderer that draws for one of this application's windows, with the
// pointer where the display server tells its position (X11).
RendererEnvironment windowEnvironment();

}  // namespace quellton
