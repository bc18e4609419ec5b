#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Visualizer.h"

namespace quellton {

// The fixed list of visualizations, built once on first use, read-only afterwards.
const std::vector<Visualizer>& catalog();

std::vector<Visualizer> catalog2D();
std::vector<Visualizer> catalog3D();
std::vector<Visualizer> catalogFX();
std::vector<Visualizer> catalogArt();

namespace Catalog {
// The entry with this id, or nullptr.
const Visualizer* byID(std::string_view id);
const std::unordered_map<std::string, const Visualizer*>& index();
}  // namespace Catalog

// The shader body embedded from shaders/<id>.glsl; empty when there is none.
std::string_view shaderBody(std::string_view id);

}  // namespace quellton
