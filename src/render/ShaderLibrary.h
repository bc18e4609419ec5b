#pragma once

#include <QImage>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "AudioFrame.h"
#include "FeedbackBuffers.h"
#include "Palette.h"
#include "Pipeline.h"
#include "Visualizer.h"
#include "gl/GlContext.h"

namespace quellton {

struct PixelSize {
    double width = 0, height = 0;
};

// Compiles every visualization once per process and renders stills without a window.
class ShaderLibrary {
public:
    // The process's library; the first call builds it with the provider chosen by useProvider()
    // (headless EGL when none was chosen) and stops the program when no GPU context can be made.
    static ShaderLibrary& shared();
    // Chooses how the shared library makes its contexts; only before the first call of shared().
    static void useProvider(std::function<std::unique_ptr<GlContextProvider>()> factory);

    explicit ShaderLibrary(std::unique_ptr<GlContextProvider> provider);
    ~ShaderLibrary();
    ShaderLibrary(const ShaderLibrary&) = delete;
    ShaderLibrary& operator=(const ShaderLibrary&) = delete;

    // Compiles the catalog in the background, `first` alone before the rest; completion runs on the
    // main thread when a Qt application exists, else on the compiling thread.
    void compileAll(std::optional<std::string> first, std::function<void()> completion);
    void compileAll(std::vector<Visualizer> entries, std::optional<std::string> first, std::function<void()> completion);
    void compileAllBlocking();
    // Lets background compilation finish the shaders in hand and waits for it; before the process ends,
    // since the driver's compiler must not outlive its own teardown.
    void stopBackgroundWork();
    void compileBlocking(std::span<const Visualizer> entries);
    // Compiles one visualization into `states` or, with the compiler's log, into `failures`;
    // `warm` also draws one pixel with it, for compilations that prepare live drawing.
    void compile(const Visualizer& v, bool warm = false);

    std::optional<Pipeline> pipeline(std::string_view id) const;
    std::map<std::string, std::string> failures() const;
    Pipeline presentPipeline() const { return present_; }
    // A program of the share group's vertex stage and this fragment stage; needs a current context.
    std::optional<Pipeline> linkFragment(const std::string& fragmentSource, std::string& log) {
        return link(fragmentSource, false, log);
    }

    // Makes this thread's context of the share group current, creating it on first use.
    bool bindThreadContext();
    // Destroys this thread's context, e.g. before a worker thread ends.
    void releaseThreadContext();
    // The share group's provider, for contexts that draw into windows.
    GlContextProvider& provider() { return *provider_; }

    // Offline rendering: a still (B, G, R, X bytes, upright) or nothing.
    std::optional<QImage> snapshot(const Visualizer& v, PixelSize size, double time,
                                   std::optional<Palette> palette = std::nullopt,
                                   std::optional<AudioFrame> frame = std::nullopt, std::array<float, 2> mouse = {0, 0});
    // The same with a chosen number of feedback frames before the picture (the snapshot simulates 241).
    std::optional<QImage> snapshotAfter(int historyFrames, const Visualizer& v, PixelSize size, double time,
                                        std::optional<Palette> palette, std::optional<AudioFrame> frame,
                                        std::array<float, 2> mouse);
    // Shortest GPU time of one frame in milliseconds, -1 when the visualization cannot run.
    double benchmark(const Visualizer& v, PixelSize size);
    // Two cleared RGBA16F textures; needs this thread's context current.
    std::optional<FeedbackBuffers> makeFeedback(PixelSize size);

    static std::vector<std::string> compileOrder(std::span<const Visualizer> entries, const std::optional<std::string>& first);

private:
    void compileInParallel(std::span<const Visualizer> entries, bool warm, bool behindLiveWork = false);
    std::optional<Pipeline> link(const std::string& fragment, bool feedback, std::string& log);
    void warmUp(const Pipeline& pipeline);

    std::unique_ptr<GlContextProvider> provider_;
    std::unique_ptr<GlContext> root_;
    const unsigned generation_;
    std::uint32_t vertexShader_ = 0;
    Pipeline present_;

    mutable std::mutex statesLock_;
    std::map<std::string, Pipeline, std::less<>> states_;
    mutable std::mutex failuresLock_;
    std::map<std::string, std::string> failures_;

    std::atomic<bool> stopping_{false};
    std::mutex backgroundLock_;
    std::vector<std::thread> background_;
};

}  // namespace quellton
