// Cost of every body at a small size and at its catalog scale, against the two reference spectacles
// (gargantua and wolkenflug) measured in the same run. Optional argument: the width (default 240).
//
// "gpu" is ShaderLibrary::benchmark. On a software rasteriser its timestamps follow command setup more than
// pixel work, so "wall" adds the wall-clock time of one blocking render (one feedback pass plus the final
// pass, read back), the shortest of a few.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "Catalog.h"
#include "ShaderLibrary.h"

using namespace quellton;

namespace {

struct Row {
    const Visualizer* v;
    double gpuFull, gpuScaled, wallScaled;
};

PixelSize scaledSize(PixelSize size, double scale) {
    return {std::max(std::round(size.width * scale), 1.0), std::max(std::round(size.height * scale), 1.0)};
}

double wallMs(ShaderLibrary& library, const Visualizer& v, PixelSize size) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 4; ++i) {
        const auto start = std::chrono::steady_clock::now();
        if (!library.snapshotAfter(1, v, size, 6.3, std::nullopt, std::nullopt, {0, 0})) return -1;
        const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
        if (i > 0) best = std::min(best, spent.count());  // the first call warms up
    }
    return best;
}

// Lists the rows whose measure exceeds the larger reference's; returns how many.
int listCostlier(const std::vector<Row>& rows, const char* name, const std::function<double(const Row&)>& cost,
                 double gargantua, double wolkenflug) {
    const double limit = std::max(gargantua, wolkenflug);
    std::printf("\n%s: gargantua %.3f ms, wolkenflug %.3f ms; costlier than the larger:\n", name, gargantua, wolkenflug);
    int over = 0;
    for (const Row& r : rows) {
        const double ms = cost(r);
        if (ms < 0) std::printf("  %-15s cannot run\n", r.v->id.c_str());
        else if (ms > limit) std::printf("  %-15s %9.3f ms  %.2f x\n", r.v->id.c_str(), ms, ms / limit);
        over += ms < 0 || ms > limit;
    }
    std::printf("  %d of %zu\n", over, rows.size());
    return over;
}

}  // namespace

int main(int argc, char** argv) {
    const double width = argc > 1 ? std::atof(argv[1]) : 240;
    const PixelSize size{width, std::round(width * 932 / 1440)};  // the shape of a 1440 x 932 desktop
    ShaderLibrary& library = ShaderLibrary::shared();
    library.compileAllBlocking();
    for (const auto& [id, message] : library.failures()) std::printf("FEHLER %s\n", id.c_str());

    std::vector<Row> rows;
    for (const Visualizer& v : catalog()) {
        const PixelSize scaled = scaledSize(size, v.scale);
        rows.push_back({&v, library.benchmark(v, size), library.benchmark(v, scaled), wallMs(library, v, scaled)});
    }
    auto find = [&](const char* id) {
        return *std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.v->id == id; });
    };
    const Row gargantua = find("gargantua"), wolkenflug = find("wolkenflug");
    if (std::min({gargantua.gpuScaled, wolkenflug.gpuScaled, gargantua.wallScaled, wolkenflug.wallScaled}) <= 0) {
        std::printf("reference bodies cannot run\n");
        return 1;
    }

    std::printf("size %.0f x %.0f, scaled by each body's scale; ms per frame; ratios of the scaled cost\n", size.width,
                size.height);
    std::printf("%-15s %5s %9s %9s %9s %7s %7s %7s %7s\n", "id", "scale", "gpu full", "gpu", "wall", "g/garg", "g/wolk",
                "w/garg", "w/wolk");
    for (const Row& r : rows)
        std::printf("%-15s %5.2f %9.3f %9.3f %9.3f %7.2f %7.2f %7.2f %7.2f\n", r.v->id.c_str(), r.v->scale, r.gpuFull,
                    r.gpuScaled, r.wallScaled, r.gpuScaled / gargantua.gpuScaled, r.gpuScaled / wolkenflug.gpuScaled,
                    r.wallScaled / gargantua.wallScaled, r.wallScaled / wolkenflug.wallScaled);

    listCostlier(rows, "gpu", &Row::gpuScaled, gargantua.gpuScaled, wolkenflug.gpuScaled);
    listCostlier(rows, "wall", &Row::wallScaled, gargantua.wallScaled, wolkenflug.wallScaled);
    return 0;
}
