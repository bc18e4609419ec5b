#include "SidebarItem.h"

#include "Catalog.h"

namespace quellton {

std::string SidebarItem::title() const {
    switch (kind) {
    case Kind::all: return "Alle Darstellungen";
    case Kind::mix: return "Mein Mix";
    case Kind::category: return std::string(categoryTitle(category));
    }
    return {};
}

std::vector<const Visualizer*> detailItems(const SidebarItem& filter, const std::set<std::string>& mix) {
    std::vector<const Visualizer*> items;
    for (const Visualizer& v : catalog()) {
        const bool shown = filter.kind == SidebarItem::Kind::all ||
                           (filter.kind == SidebarItem::Kind::mix && mix.count(v.id)) ||
                           (filter.kind == SidebarItem::Kind::category && v.category == filter.category);
        if (shown) items.push_back(&v);
    }
    return items;
}

std::string countSubtitle(std::size_t count) {
    return count == 1 ? "1 Darstellung" : std::to_string(count) + " Darstellungen";
}

}  // namespace quellton
