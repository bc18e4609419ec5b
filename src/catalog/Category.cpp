#include "Category.h"

namespace quellton {

namespace {
struct CategoryText {
    std::string_view title, symbol;
};
constexpr std::array<CategoryText, 9> texts = {{
    {"Ringe", "circle.circle"},
    {"Spektrum", "chart.bar.fill"},
    {"Wellen", "waveform.path"},
    {"3D", "cube.transparent"},
    {"4D", "rotate.3d"},
    {"Kosmos", "sparkles"},
    {"Psychedelisch", "camera.filters"},
    {"Trance", "tornado"},
    {"Spektakel", "flame.fill"},
}};
}  // namespace

std::string_view categoryTitle(Category c) { return texts[std::size_t(c)].title; }
std::string_view categorySymbol(Category c) { return texts[std::size_t(c)].symbol; }

std::optional<Category> categoryFromTitle(std::string_view title) {
    for (Category c : allCategories)
        if (categoryTitle(c) == title) return c;
    return std::nullopt;
}

}  // namespace quellton
