#pragma once

#include <optional>
#include <string_view>

#include "AudioFrame.h"

namespace quellton {

// Audio frames for looking at and testing visualizations: "silent", "loud", "bass", "treble", "idle".
std::optional<AudioFrame> namedTestFrame(std::string_view name, double time);

}  // namespace quellton
