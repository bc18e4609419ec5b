#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace quellton {

// Drawing resolution of the wallpapers; the label is also the persisted value.
enum class Quality { saver, balanced, max };

std::string_view qualityLabel(Quality q);
std::optional<Quality> qualityFromLabel(std::string_view label);

// The user's render settings as the renderers see them, always copied whole.
struct RenderSettings {
    std::string currentID = "nation";
    std::optional<std::string> hoverID;
    std::optional<int> paletteOverride;
    float reactivity = 1.0f;
    float smoothing = 0.15f;
    Quality quality = Quality::balanced;
    int fps = 60;
    bool paused = false;
    bool frameLog = false;  // frame timings go to the frame log

    bool operator==(const RenderSettings&) const = default;
};

// The one process-wide settings snapshot: the model replaces it, each renderer copies it per frame.
class RenderState {
public:
    static RenderSettings get();
    static void set(RenderSettings settings);
    // The system asks to save power (its power-saver profile): frame rates drop.
    static bool lowPower();
    static void setLowPower(bool on);

private:
    static std::mutex lock;
    static RenderSettings current;
    static bool powerSaver;
};

}  // namespace quellton
