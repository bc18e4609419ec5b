#include <gtest/gtest.h>

#include <map>
#include <set>
#include <thread>

#include "Catalog.h"
#include "Palette.h"

using namespace quellton;

TEST(Catalog, EntriesInOrderAndPerCategory) {
    const auto& all = catalog();
    ASSERT_EQ(all.size(), 97u);
    EXPECT_EQ(all.front().id, "nation");
    EXPECT_EQ(all.back().id, "epizykel");
    EXPECT_EQ(all[33].id, "tunnel");
    EXPECT_EQ(all[50].id, "julia4d");
    EXPECT_EQ(all[68].id, "spektrogramm");
    EXPECT_EQ(catalog2D().size(), 33u);
    EXPECT_EQ(catalog3D().size(), 18u);
    EXPECT_EQ(catalogFX().size(), 29u);
    EXPECT_EQ(catalogArt().size(), 17u);
    std::map<Category, int> counts;
    for (const auto& v : all) ++counts[v.category];
    const int expected[] = {12, 12, 9, 14, 5, 6, 8, 14, 17};
    for (std::size_t i = 0; i < allCategories.size(); ++i) EXPECT_EQ(counts[allCategories[i]], expected[i]);
}

// Feedback belongs to the trance entries exactly, and those always draw at full resolution.
TEST(Catalog, EntriesAreUniqueValidAndFeedbackOnlyForTrance) {
    std::set<std::string> ids, names;
    for (const auto& v : catalog()) {
        ids.insert(v.id);
        names.insert(v.name);
        EXPECT_GE(v.palette, 0);
        EXPECT_LT(v.palette, int(Palette::all().size())) << v.id;
        EXPECT_GT(v.scale, 0.0);
        EXPECT_LE(v.scale, 1.0);
        EXPECT_EQ(v.feedback, v.category == Category::trance) << v.id;
        if (v.feedback) {
            EXPECT_EQ(v.scale, 1.0) << v.id;
        }
        for (char c : v.id) EXPECT_TRUE((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) << v.id;
    }
    EXPECT_EQ(ids.size(), 97u);
    EXPECT_EQ(names.size(), 97u);
}

TEST(Catalog, LookupByIDAlsoUnderConcurrentFirstUse) {
    std::vector<const Visualizer*> seen(8);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) threads.emplace_back([&seen, i] { seen[i] = Catalog::byID("halo"); });
    for (auto& t : threads) t.join();
    for (auto* v : seen) EXPECT_EQ(v, seen[0]);
    EXPECT_NE(seen[0], nullptr);

    EXPECT_EQ(Catalog::index().size(), 97u);
    const Visualizer* cell = Catalog::byID("24zeller");
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->name, "24-Zeller");
    EXPECT_EQ(cell->category, Category::hyper);
    EXPECT_EQ(cell->palette, 6);
    EXPECT_EQ(cell->scale, 0.75);
    // The generated edge table precedes the cell's body.
    EXPECT_EQ(cell->code.rfind("const ivec2 EDGES[96] = ivec2[96](ivec2(0, 4), ivec2(0, 6),", 0), 0u);
    EXPECT_EQ(Catalog::byID("Nation"), nullptr);
    EXPECT_EQ(Catalog::byID(""), nullptr);
    const Visualizer* geiss = Catalog::byID("schmiere");
    ASSERT_NE(geiss, nullptr);
    EXPECT_EQ(geiss->name, "Geiss");
    EXPECT_TRUE(geiss->feedback);
    EXPECT_EQ(Catalog::byID("aether")->name, "Äther");
}

TEST(Category, TitlesAndSymbols) {
    EXPECT_EQ(categoryFromTitle("3D"), Category::space);
    EXPECT_EQ(categoryFromTitle("Psychedelisch"), Category::trip);
    EXPECT_EQ(categoryFromTitle("psychedelisch"), std::nullopt);
    EXPECT_EQ(categoryFromTitle(""), std::nullopt);
    EXPECT_EQ(categoryTitle(Category::show), "Spektakel");
    EXPECT_EQ(categorySymbol(Category::trance), "tornado");
    for (Category c : allCategories) EXPECT_EQ(categoryFromTitle(categoryTitle(c)), c);
}
