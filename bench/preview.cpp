// The gallery preview's read-back: frames of a preview-role renderer at the hero's size, drawn to
// completion with and without the asynchronous read-back, in alternating rounds of one run. Prints
// the time per frame of both and their ratio, and what the capture call itself costs once the frame
// is complete (the copy into a pixel buffer and the hand-over of an earlier one; it never waits for
// a fence). On the render thread the frame is not finished first: on a software rasteriser the
// read then completes the frame, as presenting a window would. Optional arguments: the
// visualization (default nation), the width (default 985, the hero in a 1240-point window) and the
// rounds (default 6).
#include <epoxy/gl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Catalog.h"
#include "FrameReadback.h"
#include "BenchTiming.h"
#include "RenderSettings.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"

using namespace quellton;

namespace {

using bench::Clock;
using bench::median;
using bench::msSince;

}  // namespace

int main(int argc, char** argv) {
    const std::string id = argc > 1 ? argv[1] : "nation";
    const int width = argc > 2 ? std::atoi(argv[2]) : 985;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 6;
    const int height = 340, framesPerRound = 40;
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);

    ShaderLibrary& library = ShaderLibrary::shared();
    const Visualizer* v = Catalog::byID(id);
    if (!v) {
        std::fprintf(stderr, "unknown visualization %s\n", id.c_str());
        return 1;
    }
    library.compileBlocking(std::vector<Visualizer>{*v});
    if (!library.bindThreadContext()) return 1;
    RenderSettings settings;
    settings.currentID = id;
    RenderState::set(settings);

    VisualRenderer renderer(Role::preview, 0.0);
    renderer.inputs().setGeometry({double(width), double(height)}, {0, 0, double(width), double(height)}, 1.0);
    GLuint vertexArray = 0;
    glGenVertexArrays(1, &vertexArray);
    glBindVertexArray(vertexArray);
    auto target = RenderTarget::create(width, height, GL_RGBA8);
    auto mailbox = std::make_shared<FrameMailbox>();
    FrameReadback readback(mailbox);
    if (!target) return 1;

    double now = 1.0;
    std::vector<double> plain, withReadback, captureCalls;
    double longestCapture = 0;
    auto round = [&](bool read) {
        const auto start = Clock::now();
        for (int i = 0; i < framesPerRound; ++i) {
            now += 1.0 / 60;
            renderer.render(now, *target);
            if (read) {
                glFinish();
                const auto call = Clock::now();
                readback.capture(*target);
                const double spent = msSince(call);
                captureCalls.push_back(spent);
                longestCapture = std::max(longestCapture, spent);
            }
            glFinish();  // the frame is complete, as it is before the next one on the render thread
        }
        return msSince(start) / framesPerRound;
    };
    round(true);  // warm-up: the first draws compile on llvmpipe
    round(false);
    captureCalls.clear();
    longestCapture = 0;
    for (int r = 0; r < rounds; ++r) {
        plain.push_back(round(false));
        withReadback.push_back(round(true));
    }

    const double a = median(plain), b = median(withReadback);
    std::printf("%s at %d x %d, %d rounds of %d frames each way\n", id.c_str(), width, height, rounds, framesPerRound);
    std::printf("without read-back: %.2f ms per frame\n", a);
    std::printf("with read-back:    %.2f ms per frame\n", b);
    std::printf("ratio: %.2f (read-back adds %.0f %%)\n", b / a, (b / a - 1) * 100);
    std::printf("capture call on a complete frame: median %.3f ms, longest %.3f ms; frames delivered %ld of %ld, "
                "skipped %ld\n",
                median(captureCalls), longestCapture, readback.counts().delivered, readback.counts().started,
                readback.counts().skipped);
    glDeleteVertexArrays(1, &vertexArray);
    return 0;
}
