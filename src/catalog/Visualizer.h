#pragma once

#include <string>

#include "Category.h"

namespace quellton {

// One visualization: identity, display data and its fragment-shader body.
struct Visualizer {
    std::string id;
    std::string name;
    Category category = Category::ring;
    int palette = 0;
    std::string code;
    double scale = 1.0;  // resolution factor, 0 < scale <= 1
    bool feedback = false;  // the body reads its previous frame

    // Identity is the id alone.
    bool operator==(const Visualizer& other) const { return id == other.id; }
};

}  // namespace quellton
