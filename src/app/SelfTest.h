#pragma once

#include <ostream>
#include <span>

#include "Visualizer.h"

namespace quellton {

// Checks frame shaping and the catalog; prints one line per failure and a summary. 0 = passed.
int selftest(std::ostream& out);
int selftest(std::ostream& out, std::span<const Visualizer> entries, int paletteCount);

}  // namespace quellton
