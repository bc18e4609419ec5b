#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "Category.h"
#include "Visualizer.h"

namespace quellton {

// What the sidebar selects and the detail column shows: everything, the Mix, or one category.
struct SidebarItem {
    enum class Kind { all, mix, category };
    Kind kind = Kind::all;
    Category category = Category::ring;  // meaningful for Kind::category only

    static SidebarItem forCategory(Category c) { return {Kind::category, c}; }
    bool operator==(const SidebarItem& other) const {
        return kind == other.kind && (kind != Kind::category || category == other.category);
    }
    // The window title: "Alle Darstellungen", "Mein Mix" or the category's title.
    std::string title() const;
};

// The visualizers a filter shows, in catalog order; Mix ids the catalog does not know are left out.
std::vector<const Visualizer*> detailItems(const SidebarItem& filter, const std::set<std::string>& mix);
// "1 Darstellung", otherwise "<n> Darstellungen" (also for none).
std::string countSubtitle(std::size_t count);

}  // namespace quellton
