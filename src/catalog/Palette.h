#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace quellton {

struct Color3 {
    float r = 0, g = 0, b = 0;
    bool operator==(const Color3&) const = default;
};

// A colour world: four stops that the shaders walk through cyclically.
struct Palette {
    int id = 0;
    std::string name;
    std::array<Color3, 4> stops;

    static const std::vector<Palette>& all();
    static Color3 fromHex(std::uint32_t rgb);
};

}  // namespace quellton
