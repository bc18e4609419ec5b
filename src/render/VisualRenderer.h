#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "FeedbackBuffers.h"
#include "FrameInputs.h"
#include "FrameStats.h"
#include "PublishedAudio.h"
#include "RenderSettings.h"

namespace quellton {

class ShaderLibrary;

// What a renderer reads from outside each frame; the defaults are the real sources.
struct RendererEnvironment {
    std::function<RenderSettings()> settings;
    std::function<PublishedAudio()> audio;
    std::function<double()> wallClock;
    // Pointer in global coordinates, top left, y down; nothing when it cannot be read.
    std::function<std::optional<std::array<double, 2>>()> pointer;
    double mainDisplayHeight = 0;  // turns the pointer's y into the renderers' y-up coordinates
    std::function<bool()> lowPower;
    bool frameLog = false;

    static RendererEnvironment live();
};

struct PixelExtent {
    int width = 16, height = 16;
    bool operator==(const PixelExtent&) const = default;
};

// Drawing resolution: quality (or the preview's cap), backing factor and the visualization's scale, at least 16 px.
PixelExtent drawableExtent(const Inputs& inputs, Quality quality, Role role, double scale);
int wantedFrameRate(int settingsFps, bool lowPower);
// The smallest scale of the shown and the fading visualization, 1 when neither is in the catalog.
double layerScale(const std::optional<std::string>& shown, const std::optional<std::string>& previous);

// Draws one live view of a visualization, with cross-fades, feedback and ripples; render thread only.
class VisualRenderer {
public:
    VisualRenderer(Role role, double now, RendererEnvironment environment = RendererEnvironment::live());

    struct Frame {
        bool drawn = false;
        PixelExtent wanted;  // drawable size for the frames to come
    };
    // The frame procedure; draws into `drawable` (the framebuffer in hand) with this thread's context current.
    Frame render(double now, const RenderTarget& drawable);

    LockedInputs& inputs() { return inputs_; }
    Role role() const { return role_; }
    int fps() const { return fps_; }
    const FrameState& state() const { return state_; }
    // Ids whose feedback history is kept.
    std::vector<std::string> feedbackIDs() const;
    const FeedbackBuffers* feedbackFor(const std::string& id) const;
    // Frees the textures and buffers; called with the drawing thread's context current.
    void releaseGpuResources();

private:
    void drawLayers(double now, const RenderTarget& drawable, const RenderSettings& settings, const Inputs& inputs,
                    float blend);

    Role role_;
    RendererEnvironment env_;
    LockedInputs inputs_;
    FrameState state_;
    FrameStats frameStats_;
    int fps_ = 60;
    std::map<std::string, FeedbackBuffers> feedback_;
    std::optional<UniformBuffers> buffers_;
    PixelExtent wanted_;
};

}  // namespace quellton
