// What a Plasma screen's stream costs per frame against drawing the frame, in alternating rounds of
// one run: a wallpaper-role renderer at the screen's size drawn to completion, then the same with
// the stream's work added (the asynchronous read-back and the copy of the newest frame into a
// stream buffer of shared-memory layout). PipeWire's own hand-over of a queued buffer is not in it.
// Optional arguments: the visualization (default nation), the width and height (default 1920 1080)
// and the rounds (default 6).
#include <epoxy/gl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Catalog.h"
#include "FrameCopy.h"
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
    const int width = argc > 2 ? std::atoi(argv[2]) : 1920;
    const int height = argc > 3 ? std::atoi(argv[3]) : 1080;
    const int rounds = argc > 4 ? std::atoi(argv[4]) : 6;
    const int framesPerRound = 30;
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

    VisualRenderer renderer(Role::wallpaper, 0.0);
    renderer.inputs().setGeometry({double(width), double(height)}, {0, 0, double(width), double(height)}, 1.0);
    GLuint vertexArray = 0;
    glGenVertexArrays(1, &vertexArray);
    glBindVertexArray(vertexArray);
    auto target = RenderTarget::create(width, height, GL_RGBA8);
    if (!target) return 1;
    auto mailbox = std::make_shared<FrameMailbox>();
    FrameReadback readback(mailbox);
    std::vector<std::uint8_t> buffer(std::size_t(width) * std::size_t(height) * 4);

    double now = 1.0;
    long copied = 0;
    auto round = [&](bool stream) {
        const auto start = Clock::now();
        for (int i = 0; i < framesPerRound; ++i) {
            now += 1.0 / 60;
            renderer.render(now, *target);
            if (stream) {
                readback.capture(*target);
                if (plasma::copyFrame(mailbox->latest().first, {width, height}, buffer.data(), buffer.size()) > 0)
                    ++copied;
            }
            glFinish();  // the frame is complete, as it is before the next one on the render thread
        }
        return msSince(start) / framesPerRound;
    };
    round(true);  // warm-up: the first draws compile on llvmpipe
    round(false);
    copied = 0;
    std::vector<double> drawn, streamed;
    for (int r = 0; r < rounds; ++r) {
        drawn.push_back(round(false));
        streamed.push_back(round(true));
    }

    const double a = median(drawn), b = median(streamed);
    std::printf("%s at %d x %d, %d rounds of %d frames each way\n", id.c_str(), width, height, rounds, framesPerRound);
    std::printf("drawing only:      %.2f ms per frame\n", a);
    std::printf("drawing + stream:  %.2f ms per frame (read-back and copy into the stream buffer)\n", b);
    std::printf("stream cost: %.2f ms per frame, %.0f %% of drawing; frames copied %ld\n", b - a, (b / a - 1) * 100,
                copied);
    glDeleteVertexArrays(1, &vertexArray);
    return 0;
}
