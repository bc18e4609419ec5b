#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "Passes.h"
#include "ShaderLibrary.h"
#include "Uniforms.h"

namespace quellton {

namespace {

constexpr int snapshotHistory = 241;  // four seconds at 60 frames per second, ending at the requested time
constexpr int framesPerBatch = 20;

Uniforms stillUniforms(PixelSize size, double t, const AudioFrame& frame, const Palette& palette) {
    const float w = float(size.width), h = float(size.height);
    Uniforms u;
    u.rt = {w, h, float(t), 1.0f};
    u.setAudio(frame);
    u.extra = {frame.beat, 10.0f, w / std::max(h, 1.0f), float(t * 0.9)};  // click age 10 s: no ripple
    u.setPalette(palette);
    return u;
}

}  // namespace

std::optional<FeedbackBuffers> ShaderLibrary::makeFeedback(PixelSize size) {
    FeedbackBuffers fb;
    fb.width = size.width;
    fb.height = size.height;
    for (auto& texture : fb.textures) {
        auto target = RenderTarget::create(int(size.width), int(size.height), GL_RGBA16F);
        if (!target) return std::nullopt;
        texture = std::move(*target);
        texture.bindForDrawing();
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    return fb;
}

std::optional<QImage> ShaderLibrary::snapshot(const Visualizer& v, PixelSize size, double time,
                                              std::optional<Palette> palette, std::optional<AudioFrame> frame,
                                              std::array<float, 2> mouse) {
    return snapshotAfter(snapshotHistory, v, size, time, palette, frame, mouse);
}

std::optional<QImage> ShaderLibrary::snapshotAfter(int historyFrames, const Visualizer& v, PixelSize size, double time,
                                                   std::optional<Palette> palette, std::optional<AudioFrame> frame,
                                                   std::array<float, 2> mouse) {
    const auto own = pipeline(v.id);
    if (!own || !bindThreadContext()) return std::nullopt;
    auto target = RenderTarget::create(int(size.width), int(size.height), GL_RGBA8);
    if (!target) return std::nullopt;
    const Palette& colours = palette ? *palette : Palette::all().at(std::size_t(v.palette));
    auto inputsAt = [&](double t) {
        const AudioFrame f = frame ? *frame : AudioFrame::idle(t, 1.0f);
        Uniforms u = stillUniforms(size, t, f, colours);
        u.mouse = {mouse[0], mouse[1], mouse[0], mouse[1]};
        return std::pair(u, spectrumArray(f));
    };

    UniformBuffers buffers;
    std::optional<FeedbackBuffers> fb;
    if (v.feedback) {
        fb = makeFeedback(size);
        if (!fb) return std::nullopt;
        for (int i = 0; i < historyFrames; ++i) {
            const double t = i == historyFrames - 1 ? time : time - (historyFrames - 1) / 60.0 + i / 60.0;
            const auto [u, s] = inputsAt(t);
            feedbackPass(*own, *fb, buffers, u, s);
            if (i % framesPerBatch == framesPerBatch - 1) glFlush();
        }
    }
    const auto [u, s] = inputsAt(time);
    target->bindForDrawing();
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    finalPass(*own, present_, fb ? &*fb : nullptr, buffers, u, s);

    QImage image(target->width, target->height, QImage::Format_RGB32);
    if (image.isNull()) return std::nullopt;
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    // Rows come back bottom first; the image is upright.
    std::vector<std::uint8_t> rows(std::size_t(target->width) * std::size_t(target->height) * 4);
    glReadPixels(0, 0, target->width, target->height, GL_BGRA, GL_UNSIGNED_BYTE, rows.data());
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if (glGetError() != GL_NO_ERROR) return std::nullopt;
    const std::size_t stride = std::size_t(target->width) * 4;
    for (int y = 0; y < target->height; ++y) {
        auto* line = image.scanLine(target->height - 1 - y);
        std::copy_n(rows.data() + std::size_t(y) * stride, stride, line);
        for (std::size_t x = 3; x < stride; x += 4) line[x] = 0xFF;
    }
    return image;
}

double ShaderLibrary::benchmark(const Visualizer& v, PixelSize size) {
    const auto own = pipeline(v.id);
    if (!own || !bindThreadContext()) return -1;
    auto target = RenderTarget::create(int(size.width), int(size.height), GL_RGBA8);
    if (!target) return -1;
    std::optional<FeedbackBuffers> fb;
    if (v.feedback && !(fb = makeFeedback(size))) return -1;
    const Palette& colours = Palette::all().at(std::size_t(v.palette));
    UniformBuffers buffers;
    GlName begin = makeQuery(), end = makeQuery();
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 8; ++i) {
        const AudioFrame f = AudioFrame::idle(6.3 + 0.1 * i, 1.0f);
        Uniforms u = stillUniforms(size, 6.3, f, colours);
        u.extra[3] = 5.7f;
        const SpectrumArray s = spectrumArray(f);
        glQueryCounter(begin.id(), GL_TIMESTAMP);
        if (fb) feedbackPass(*own, *fb, buffers, u, s);
        target->bindForDrawing();
        finalPass(*own, present_, fb ? &*fb : nullptr, buffers, u, s);
        glQueryCounter(end.id(), GL_TIMESTAMP);
        GLuint64 t0 = 0, t1 = 0;
        glGetQueryObjectui64v(begin.id(), GL_QUERY_RESULT, &t0);
        glGetQueryObjectui64v(end.id(), GL_QUERY_RESULT, &t1);
        if (i >= 1) best = std::min(best, double(t1 - t0) / 1e6);  // the first frame only warms caches
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return best;
}

}  // namespace quellton
