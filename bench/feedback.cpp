// Every visualization that reads its previous frame, drawn by the live renderer for a long stretch
// of simulated time at a small size: half a minute of the loudest sound at the strongest reaction,
// half a minute of silence, over and over. Its feedback image must stay finite and must not
// brighten from one round to the next.
//
//   bench_feedback [--minutes 10] [--size 64x36] [id ...]
//
// Exits with status 1 when a visualization fails; the suite runs a short variant.
#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "BenchArguments.h"
#include "Catalog.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"

using namespace quellton;

namespace {

constexpr double frameSeconds = 1.0 / 60;
constexpr double phaseSeconds = 30;  // loud, then silent, then loud again
// The feedback entry clamps every value to 0 … 8: an image that reaches the ceiling is feeding
// on itself, and one whose average is well past white has run away.
constexpr float ceiling = 8.0f;
constexpr double brightestMean = 1.5;
// A picture may settle at a different level, but not keep climbing round after round.
constexpr double allowedClimb = 0.15;

AudioFrame loudest(double t) {
    AudioFrame f;
    f.bands.fill(1.0f);
    f.peaks.fill(1.0f);
    for (std::size_t i = 0; i < f.wave.size(); ++i) f.wave[i] = (i / 8) % 2 ? 1.0f : -1.0f;
    f.bass = f.mid = f.high = f.level = 1.0f;
    f.beat = std::fmod(t, 0.5) < 0.1 ? 1.0f : 0.0f;  // 120 beats a minute
    return f;
}

struct Check {
    bool finite = true;
    float largest = 0;
    double mean = 0;  // mean of the three colours over the image
};

Check inspect(const RenderTarget& target) {
    std::vector<float> pixels(std::size_t(target.width) * std::size_t(target.height) * 4);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer.id());
    glReadPixels(0, 0, target.width, target.height, GL_RGBA, GL_FLOAT, pixels.data());
    Check c;
    double sum = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        for (std::size_t k = 0; k < 3; ++k) {
            const float v = pixels[i + k];
            if (!std::isfinite(v)) c.finite = false;
            c.largest = std::max(c.largest, std::fabs(v));
            sum += v;
        }
    c.mean = sum / (3.0 * double(target.width) * double(target.height));
    return c;
}

struct Result {
    bool finite = true;
    float largest = 0;
    std::vector<double> loudMeans, silentMeans;  // at the end of each phase
    std::string failure;
};

Result soak(const Visualizer& v, double seconds, int width, int height, const RenderTarget& drawable) {
    RenderSettings settings;
    settings.currentID = v.id;
    settings.reactivity = 2.4f;  // "Extrem"
    PublishedAudio audio;
    double wall = 1000;
    RendererEnvironment env;
    env.settings = [&] { return settings; };
    env.audio = [&] { return audio; };
    env.wallClock = [&] { return wall; };
    env.lowPower = [] { return false; };
    VisualRenderer renderer(Role::wallpaper, 0.0, env);
    renderer.inputs().setGeometry({double(width), double(height)}, {0, 0, double(width), double(height)}, 1.0);

    Result r;
    const long frames = long(seconds / frameSeconds);
    const long perPhase = long(phaseSeconds / frameSeconds);
    for (long i = 1; i <= frames; ++i) {
        const double now = double(i) * frameSeconds;
        wall = 1000 + now;
        const bool loud = ((i - 1) / perPhase) % 2 == 0;  // frame i ends its phase when i % perPhase == 0
        if (loud) audio = {loudest(now), wall};
        else audio.frame = AudioFrame::silent();  // lastSignal stays: silence begins
        renderer.render(now, drawable);
        const bool phaseEnds = i % perPhase == 0 || i == frames;
        if (i % 30 != 0 && !phaseEnds) continue;
        const FeedbackBuffers* fb = renderer.feedbackFor(v.id);
        if (!fb) {
            r.failure = "no feedback image";
            return r;
        }
        for (const RenderTarget& texture : fb->textures) {
            const Check c = inspect(texture);
            r.finite = r.finite && c.finite;
            r.largest = std::max(r.largest, c.largest);
            if (phaseEnds && &texture == &fb->previous()) (loud ? r.loudMeans : r.silentMeans).push_back(c.mean);
        }
        if (!r.finite) {
            r.failure = "NaN or infinity after " + std::to_string(now) + " s";
            return r;
        }
    }
    if (r.largest >= ceiling * 0.999f) r.failure = "values reach the ceiling of " + std::to_string(ceiling);
    for (const auto* means : {&r.loudMeans, &r.silentMeans}) {
        if (means->empty()) continue;
        if (*std::max_element(means->begin(), means->end()) > brightestMean)
            r.failure = "the image averages past white";
        else if (means->back() > means->front() + allowedClimb)
            r.failure = "brightness climbs from " + std::to_string(means->front()) + " to " + std::to_string(means->back());
    }
    return r;
}

}  // namespace

int main(int argc, char** argv) {
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 0);
    const double minutes = bench::numberArgument(argc, argv, "--minutes", 10);
    int width = 64, height = 36;
    std::vector<std::string> only;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--size" && i + 1 < argc) std::sscanf(argv[++i], "%dx%d", &width, &height);
        else if (a == "--minutes") ++i;
        else only.push_back(a);
    }
    std::vector<Visualizer> chosen;
    for (const Visualizer& v : catalog())
        if (v.feedback && (only.empty() || std::ranges::find(only, v.id) != only.end())) chosen.push_back(v);
    if (chosen.empty()) {
        std::fprintf(stderr, "bench_feedback: no feedback visualization chosen\n");
        return 2;
    }
    ShaderLibrary& library = ShaderLibrary::shared();
    library.compileBlocking(chosen);
    if (!library.bindThreadContext()) {
        std::fprintf(stderr, "bench_feedback: no OpenGL context\n");
        return 2;
    }
    auto drawable = RenderTarget::create(width, height, GL_RGBA8);
    if (!drawable) return 2;

    std::printf("%zu feedback visualizations, %.1f min each at %d x %d, %.0f s loud and %.0f s silent in turns\n",
                chosen.size(), minutes, width, height, phaseSeconds, phaseSeconds);
    std::printf("| %-14s | %7s | %-21s | %-21s | %s\n", "id", "largest", "loud: first → last", "silent: first → last",
                "verdict");
    int failed = 0;
    for (const Visualizer& v : chosen) {
        const Result r = soak(v, minutes * 60, width, height, *drawable);
        const auto span = [](const std::vector<double>& m) {
            char text[64] = "-";
            if (!m.empty()) std::snprintf(text, sizeof text, "%.3f → %.3f", m.front(), m.back());
            return std::string(text);
        };
        std::printf("| %-14s | %7.3f | %-21s | %-21s | %s\n", v.id.c_str(), double(r.largest), span(r.loudMeans).c_str(),
                    span(r.silentMeans).c_str(), r.failure.empty() ? "ok" : r.failure.c_str());
        std::fflush(stdout);
        if (!r.failure.empty()) ++failed;
    }
    library.stopBackgroundWork();
    return failed ? 1 : 0;
}
