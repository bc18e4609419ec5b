#pragma once

#include <array>
#include <optional>

namespace quellton {

// The pointer in root-window coordinates, read over this thread's own X connection; nothing without X.
std::optional<std::array<double, 2>> x11PointerPosition();

}  // namespace quellton
