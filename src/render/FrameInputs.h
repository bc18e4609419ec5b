#pragma once

#include <array>
#include <mutex>
#include <optional>
#include <string>

#include "AudioFrame.h"
#include "RenderSettings.h"
#include "Uniforms.h"

namespace quellton {

using Point2 = std::array<float, 2>;

struct SizeF {
    double width = 0, height = 0;
};
// Global screen coordinates: origin at the bottom left of the primary screen, y up.
struct RectF {
    double x = 0, y = 0, width = 0, height = 0;
    bool contains(double px, double py) const { return px >= x && px < x + width && py >= y && py < y + height; }
    bool operator==(const RectF&) const = default;
};

// Seconds on the monotonic clock that frame times, clicks and ripples use.
double hostTimeNow();

enum class Role { wallpaper, preview };
const char* roleName(Role role);  // the name in the frame log

// What the canvas, the window code and clicks feed a renderer.
struct Inputs {
    SizeF pointSize{1, 1};
    RectF screenRect;
    double backing = 2.0;  // pixels per point
    Point2 click{0, 0};    // last click in p-coordinates
    double clickedAt = -100.0;  // host time of the last click: no ripple before the first one
    bool hidden = false;
};

// Inputs behind their own lock; every access is a short copy in or out.
class LockedInputs {
public:
    Inputs copy() const;
    void setHidden(bool hidden);
    void setGeometry(SizeF pointSize, RectF screenRect, double backing);
    // A click in the view's own points (origin bottom left, y up).
    void rippleAtLocal(double x, double y, double now);
    // A click in global screen coordinates.
    void rippleAtScreen(double x, double y, double now);

private:
    mutable std::mutex lock_;
    Inputs inputs_;
};

// The time-continuous state of one live view, advanced once per drawn frame.
struct FrameState {
    explicit FrameState(double now) : start(now), last(now) {}

    double start;
    double last;
    double musicTime = 0;
    std::optional<std::string> shown;
    std::optional<std::string> previous;
    double switchedAt = 0;
    Point2 mouse{0, 0};
    float idleBlend = 1.0f;
    AudioFrame smoothed;

    // Picks the wanted visualization and returns the cross-fade weight of `shown` (1 when none runs).
    float advanceSelection(const RenderSettings& settings, Role role, double now);
    // Idle blend, audio shaping and smoothing, music time and pointer for a step of dt seconds.
    void advanceInputs(double dt, double now, bool silent, const AudioFrame& live, const RenderSettings& settings,
                       Point2 mouseTarget);
    // The uniform block of one layer.
    Uniforms uniforms(double now, int width, int height, float alpha, const Inputs& inputs, int paletteIndex) const;
};

constexpr double crossFadeSeconds(Role role) { return role == Role::wallpaper ? 1.1 : 0.35; }
// The analyser has heard nothing for 1.5 s.
bool isSilent(double wallNow, double lastSignal);

AudioFrame mix(const AudioFrame& a, const AudioFrame& b, float t);

// Where the pointer pulls the picture, in p-coordinates; pointer in global display coordinates
// (origin top left of the main display, y down), nothing when it cannot be read.
Point2 mouseTarget(const Inputs& inputs, Role role, std::optional<std::array<double, 2>> pointer, double mainDisplayHeight);

// The palette a layer uses: a valid override, else the visualization's own.
int layerPalette(const RenderSettings& settings, int ownPalette);

}  // namespace quellton
