#include <gtest/gtest.h>

#include <map>
#include <set>

#include "Cell24.h"

using namespace quellton;

TEST(Cell24, VerticesArePermutationsOfTwoUnits) {
    std::set<std::array<int, 4>> unique;
    for (int n = 0; n < 24; ++n) {
        const auto v = cell24Vertex(n);
        int nonZero = 0;
        for (int c : v) {
            EXPECT_TRUE(c == -1 || c == 0 || c == 1);
            nonZero += c != 0;
        }
        EXPECT_EQ(nonZero, 2);
        unique.insert(v);
    }
    EXPECT_EQ(unique.size(), 24u);
    EXPECT_EQ(cell24Vertex(0), (std::array<int, 4>{1, 1, 0, 0}));
    EXPECT_EQ(cell24Vertex(7), (std::array<int, 4>{-1, 0, -1, 0}));
}

TEST(Cell24, NinetySixEdgesOfLengthSqrtTwoEightPerVertexAndTheirText) {
    const auto edges = cell24EdgeList();
    ASSERT_EQ(edges.size(), 96u);
    std::map<int, int> degree;
    for (auto [i, j] : edges) {
        const auto a = cell24Vertex(i), b = cell24Vertex(j);
        int d2 = 0;
        for (int c = 0; c < 4; ++c) d2 += (a[c] - b[c]) * (a[c] - b[c]);
        EXPECT_EQ(d2, 2) << i << "-" << j;
        ++degree[i];
        ++degree[j];
    }
    for (int n = 0; n < 24; ++n) EXPECT_EQ(degree[n], 8);
    const std::vector<std::pair<int, int>> first = {{0, 4}, {0, 6}, {0, 8}, {0, 10}, {0, 12},
                                                    {0, 14}, {0, 16}, {0, 18}, {1, 5}, {1, 7}};
    EXPECT_TRUE(std::equal(first.begin(), first.end(), edges.begin()));
    const std::vector<std::pair<int, int>> last = {{17, 20}, {17, 21}, {18, 22}, {18, 23}, {19, 22}, {19, 23}};
    EXPECT_TRUE(std::equal(last.begin(), last.end(), edges.end() - 6));

    // One line of GLSL, in the list's order.
    const std::string text = cell24Edges();
    EXPECT_EQ(text.rfind("const ivec2 EDGES[96] = ivec2[96](ivec2(0, 4), ivec2(0, 6),", 0), 0u);
    EXPECT_TRUE(text.ends_with("ivec2(19, 22), ivec2(19, 23));"));
    EXPECT_EQ(text.find('\n'), std::string::npos);
}
