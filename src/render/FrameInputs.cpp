#include "FrameInputs.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "Palette.h"

namespace quellton {

double hostTimeNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

const char* roleName(Role role) { return role == Role::wallpaper ? "hintergrund" : "vorschau"; }

Inputs LockedInputs::copy() const {
    std::lock_guard guard(lock_);
    return inputs_;
}

void LockedInputs::setHidden(bool hidden) {
    std::lock_guard guard(lock_);
    inputs_.hidden = hidden;
}

void LockedInputs::setGeometry(SizeF pointSize, RectF screenRect, double backing) {
    std::lock_guard guard(lock_);
    inputs_.pointSize = pointSize;
    inputs_.screenRect = screenRect;
    inputs_.backing = backing;
}

void LockedInputs::rippleAtLocal(double x, double y, double now) {
    std::lock_guard guard(lock_);
    const double h = std::max(inputs_.pointSize.height, 1.0);
    inputs_.click = {float((2 * x - inputs_.pointSize.width) / h), float((2 * y - h) / h)};
    inputs_.clickedAt = now;
}

void LockedInputs::rippleAtScreen(double x, double y, double now) {
    std::lock_guard guard(lock_);
    const RectF& r = inputs_.screenRect;
    const double h = std::max(r.height, 1.0);
    inputs_.click = {float((2 * (x - r.x) - r.width) / h), float((2 * (y - r.y) - h) / h)};
    inputs_.clickedAt = now;
}

float FrameState::advanceSelection(const RenderSettings& settings, Role role, double now) {
    const std::string& wanted =
        role == Role::preview && settings.hoverID ? *settings.hoverID : settings.currentID;
    if (!shown || *shown != wanted) {
        previous = shown;
        shown = wanted;
        switchedAt = now;
    }
    const float x = float(std::min((now - switchedAt) / crossFadeSeconds(role), 1.0));
    const float blend = x * x * (3.0f - 2.0f * x);
    if (blend >= 1.0f) previous.reset();
    return previous ? blend : 1.0f;
}

bool isSilent(double wallNow, double lastSignal) { return wallNow - lastSignal >= 1.5; }

void FrameState::advanceInputs(double dt, double now, bool silent, const AudioFrame& live,
                               const RenderSettings& settings, Point2 target) {
    const float goal = silent ? 1.0f : 0.0f;
    idleBlend += (goal - idleBlend) * float(1.0 - std::exp(-dt / 0.6));

    const AudioFrame idle = AudioFrame::idle(now - start, 0.55f);
    const AudioFrame shaped = mix(live, idle, idleBlend).shaped(settings.reactivity);
    const float k = settings.smoothing > 0.001f
                        ? float(1.0 - std::exp(-dt / (double(settings.smoothing) * 0.3 + 0.012)))
                        : 1.0f;
    smoothed.approach(shaped, k);

    musicTime += dt * (smoothed.level * 0.9 + 0.55 + smoothed.beat * 0.4);

    const float follow = float(1.0 - std::exp(-4.0 * dt));
    for (int i = 0; i < 2; ++i) mouse[i] += (target[i] - mouse[i]) * follow;
}

Uniforms FrameState::uniforms(double now, int width, int height, float alpha, const Inputs& inputs,
                              int paletteIndex) const {
    Uniforms u;
    u.rt = {float(width), float(height), float(std::fmod(now - start, 3600.0)), alpha};
    u.mouse = {mouse[0], mouse[1], inputs.click[0], inputs.click[1]};
    u.setAudio(smoothed);
    u.extra = {smoothed.beat, float(now - inputs.clickedAt), float(width) / float(std::max(height, 1)),
               float(std::fmod(musicTime, 3600.0))};
    u.setPalette(Palette::all().at(std::size_t(paletteIndex)));
    return u;
}

AudioFrame mix(const AudioFrame& a, const AudioFrame& b, float t) {
    AudioFrame out = a;
    out.approach(b, t);
    return out;
}

Point2 mouseTarget(const Inputs& inputs, Role role, std::optional<std::array<double, 2>> pointer,
                   double mainDisplayHeight) {
    const RectF& r = inputs.screenRect;
    if (!pointer || r.width <= 0) return {0, 0};
    const double localX = (*pointer)[0] - r.x;
    const double localY = mainDisplayHeight - (*pointer)[1] - r.y;
    constexpr double margin = 40;
    if (role == Role::preview &&
        !(localX >= -margin && localX < r.width + margin && localY >= -margin && localY < r.height + margin))
        return {0, 0};
    const double h = std::max(r.height, 1.0);
    const float x = float((2 * localX - r.width) / h), y = float((2 * localY - h) / h);
    return {std::clamp(x, -3.0f, 3.0f), std::clamp(y, -1.5f, 1.5f)};
}

int layerPalette(const RenderSettings& settings, int ownPalette) {
    const int count = int(Palette::all().size());
    if (settings.paletteOverride && *settings.paletteOverride >= 0 && *settings.paletteOverride < count)
        return *settings.paletteOverride;
    return ownPalette;
}

}  // namespace quellton
