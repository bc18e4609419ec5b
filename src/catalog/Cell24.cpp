#include "Cell24.h"

namespace quellton {

std::array<int, 4> cell24Vertex(int n) {
    static constexpr int pairs[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};
    const int k = n / 4, s = n % 4;
    std::array<int, 4> v{0, 0, 0, 0};
    v[pairs[k][0]] = (s & 1) ? -1 : 1;
    v[pairs[k][1]] = (s & 2) ? -1 : 1;
    return v;
}

std::vector<std::pair<int, int>> cell24EdgeList() {
    std::vector<std::pair<int, int>> edges;
    for (int i = 0; i < 24; ++i) {
        const auto a = cell24Vertex(i);
        for (int j = i + 1; j < 24; ++j) {
            const auto b = cell24Vertex(j);
            int dot = 0;
            for (int c = 0; c < 4; ++c) dot += a[c] * b[c];
            if (dot == 1) edges.emplace_back(i, j);
        }
    }
    return edges;
}

std::string cell24Edges() {
    const auto edges = cell24EdgeList();
    const std::string count = std::to_string(edges.size());
    std::string text = "const ivec2 EDGES[" + count + "] = ivec2[" + count + "](";
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (e) text += ", ";
        text += "ivec2(" + std::to_string(edges[e].first) + ", " + std::to_string(edges[e].second) + ")";
    }
    text += ");";
    return text;
}

}  // namespace quellton
