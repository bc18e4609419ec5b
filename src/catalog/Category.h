#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quellton {

// Gallery grouping; the German title is the category's identity.
enum class Category { ring, spectrum, wave, space, hyper, cosmos, trip, trance, show };

inline constexpr std::array<Category, 9> allCategories = {
    Category::ring,  Category::spectrum, Category::wave,   Category::space, Category::hyper,
    Category::cosmos, Category::trip,    Category::trance, Category::show,
};

std::string_view categoryTitle(Category c);
// Name of the symbol drawn beside the category in the gallery sidebar.
std::string_view categorySymbol(Category c);
std::optional<Category> categoryFromTitle(std::string_view title);

}  // namespace quellton
