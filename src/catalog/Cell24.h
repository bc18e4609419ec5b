#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace quellton {

// Vertex n of the 24-cell: the permutations of (±1, ±1, 0, 0) in a fixed numbering.
std::array<int, 4> cell24Vertex(int n);
std::vector<std::pair<int, int>> cell24EdgeList();
// GLSL text of the EDGES table, without a trailing newline.
std::string cell24Edges();

}  // namespace quellton
