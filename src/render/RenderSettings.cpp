#include "RenderSettings.h"

#include <array>

namespace quellton {

namespace {
constexpr std::array<std::string_view, 3> labels = {"Sparsam", "Ausgewogen", "Maximal"};
}

std::string_view qualityLabel(Quality q) { return labels[std::size_t(q)]; }

std::optional<Quality> qualityFromLabel(std::string_view label) {
    for (std::size_t i = 0; i < labels.size(); ++i)
        if (labels[i] == label) return Quality(i);
    return std::nullopt;
}

std::mutex RenderState::lock;
RenderSettings RenderState::current;
bool RenderState::powerSaver = false;

RenderSettings RenderState::get() {
    std::lock_guard guard(lock);
    return current;
}

void RenderState::set(RenderSettings settings) {
    std::lock_guard guard(lock);
    current = std::move(settings);
}

bool RenderState::lowPower() {
    std::lock_guard guard(lock);
    return powerSaver;
}

void RenderState::setLowPower(bool on) {
    std::lock_guard guard(lock);
    powerSaver = on;
}

}  // namespace quellton
