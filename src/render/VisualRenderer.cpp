#include "VisualRenderer.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "AudioSpectrum.h"
#include "Catalog.h"
#include "Passes.h"
#include "ShaderLibrary.h"

namespace quellton {

RendererEnvironment RendererEnvironment::live() {
    RendererEnvironment env;
    env.settings = RenderState::get;
    env.audio = [] { return AudioSpectrum::shared().published(); };
    env.wallClock = wallClockNow;
    env.pointer = [] { return std::optional<std::array<double, 2>>(); };
    env.lowPower = RenderState::lowPower;
    env.frameLog = RenderState::get().frameLog;
    return env;
}

PixelExtent drawableExtent(const Inputs& inputs, Quality quality, Role role, double scale) {
    double q = 1.0;
    if (role == Role::preview)
        q = std::min(inputs.backing, 1.5);
    else
        q = quality == Quality::saver ? 0.6 : quality == Quality::balanced ? 1.0 : inputs.backing;
    auto side = [&](double points) { return std::max(int(std::round(points * q * scale)), 16); };
    return {side(inputs.pointSize.width), side(inputs.pointSize.height)};
}

int wantedFrameRate(int settingsFps, bool lowPower) { return lowPower ? 30 : settingsFps; }

double layerScale(const std::optional<std::string>& shown, const std::optional<std::string>& previous) {
    double scale = 1.0;
    bool found = false;
    for (const auto& id : {shown, previous})
        if (id)
            if (const Visualizer* v = Catalog::byID(*id)) {
                scale = found ? std::min(scale, v->scale) : v->scale;
                found = true;
            }
    return scale;
}

VisualRenderer::VisualRenderer(Role role, double now, RendererEnvironment environment)
    : role_(role), env_(std::move(environment)), state_(now), frameStats_(now) {}

VisualRenderer::Frame VisualRenderer::render(double now, const RenderTarget& drawable) {
    const RenderSettings settings = env_.settings();
    const Inputs inputs = inputs_.copy();
    if (settings.paused || inputs.hidden) {
        state_.last = now;
        return {false, wanted_};
    }
    if (env_.frameLog)
        if (const auto summary = frameStats_.record(now - state_.last, 1.0 / fps_, now))
            appendFrameLogLine(frameLogPath(), frameLogLine(isoDateNow(), roleName(role_), *summary));
    const double dt = std::min(now - state_.last, 0.1);
    state_.last = now;
    fps_ = wantedFrameRate(settings.fps, env_.lowPower && env_.lowPower());

    const float blend = state_.advanceSelection(settings, role_, now);
    wanted_ = drawableExtent(inputs, settings.quality, role_, layerScale(state_.shown, state_.previous));

    const PublishedAudio audio = env_.audio();
    const bool silent = isSilent(env_.wallClock(), audio.lastSignal);
    const auto pointer = env_.pointer ? env_.pointer() : std::nullopt;
    state_.advanceInputs(dt, now, silent, audio.frame, settings,
                         mouseTarget(inputs, role_, pointer, env_.mainDisplayHeight));
    drawLayers(now, drawable, settings, inputs, blend);
    return {true, wanted_};
}

void VisualRenderer::drawLayers(double now, const RenderTarget& drawable, const RenderSettings& settings,
                                const Inputs& inputs, float blend) {
    ShaderLibrary& library = ShaderLibrary::shared();
    if (!buffers_) buffers_.emplace();
    const int W = drawable.width, H = drawable.height;
    const SpectrumArray s = spectrumArray(state_.smoothed);

    struct Layer {
        std::string id;
        float alpha;
    };
    std::vector<Layer> layers;
    if (state_.previous) layers.push_back({*state_.previous, 1.0f});
    if (state_.shown) layers.push_back({*state_.shown, state_.previous ? blend : 1.0f});

    struct DrawItem {
        Pipeline pipeline;
        const FeedbackBuffers* image;
        Uniforms uniforms;
    };
    std::vector<DrawItem> items;
    std::set<std::string> drawn;
    for (const Layer& layer : layers) {
        const Visualizer* v = Catalog::byID(layer.id);
        const auto pipeline = v ? library.pipeline(layer.id) : std::nullopt;
        if (!pipeline) continue;
        drawn.insert(layer.id);
        Uniforms u = state_.uniforms(now, W, H, layer.alpha, inputs, layerPalette(settings, v->palette));
        if (!v->feedback) {
            items.push_back({*pipeline, nullptr, u});
            continue;
        }
        auto it = feedback_.find(layer.id);
        if (it == feedback_.end() || it->second.width != W || it->second.height != H) {
            auto fresh = library.makeFeedback({double(W), double(H)});
            if (!fresh) continue;  // out of GPU memory: leave the layer out this frame
            it = feedback_.insert_or_assign(layer.id, std::move(*fresh)).first;
        }
        FeedbackBuffers& fb = it->second;
        feedbackPass(*pipeline, fb, *buffers_, u, s);
        items.push_back({*pipeline, &fb, u});
    }
    std::erase_if(feedback_, [&](const auto& entry) { return !drawn.count(entry.first); });

    drawable.bindForDrawing();
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    for (const DrawItem& item : items)
        finalPass(item.pipeline, library.presentPipeline(), item.image, *buffers_, item.uniforms, s);
}

std::vector<std::string> VisualRenderer::feedbackIDs() const {
    std::vector<std::string> ids;
    for (const auto& entry : feedback_) ids.push_back(entry.first);
    return ids;
}

void VisualRenderer::releaseGpuResources() {
    feedback_.clear();
    buffers_.reset();
}

const FeedbackBuffers* VisualRenderer::feedbackFor(const std::string& id) const {
    const auto it = feedback_.find(id);
    return it == feedback_.end() ? nullptr : &it->second;
}

}  // namespace quellton
