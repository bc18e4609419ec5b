#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <thread>
#include <vector>

#include "gl/GlContext.h"
#include "gl/GlObjects.h"

namespace quellton {

class VisualRenderer;
class WindowOverlay;
class FrameReadback;
class FrameMailbox;

// One window's connection to the render thread: its renderer, surface and drawable.
struct CanvasLink {
    std::weak_ptr<VisualRenderer> renderer;
    std::uintptr_t window = 0;
    // Drawn over the picture at the window's resolution; may be null.
    std::shared_ptr<WindowOverlay> overlay;
    std::atomic<int> pixelWidth{16}, pixelHeight{16};
    std::atomic<long> frames{0};
    // The window lost its contents (exposed again): show the last frame even while nothing is drawn.
    std::atomic<bool> repaint{false};

    // Render thread only.
    std::unique_ptr<GlWindowSurface> surface;
    std::unique_ptr<FrameReadback> readback;  // offscreen canvases: frames go to memory, not to a window
    std::optional<RenderTarget> drawable;
    double nextDue = 0;
    bool surfaceFailed = false;
    bool hasFrame = false;
};

// The one thread that draws every canvas, each at its renderer's frame rate, sleeping between deadlines.
class RenderThread {
public:
    // Starts the thread on first use and returns once its context is ready.
    static RenderThread& shared();
    // Ends the shared thread, if there is one, before the process ends: the driver's compiler and
    // caches must not be in use while its libraries tear down.
    static void stopShared();
    RenderThread();
    ~RenderThread();

    std::shared_ptr<CanvasLink> add(std::shared_ptr<VisualRenderer> renderer, std::uintptr_t window,
                                    std::shared_ptr<WindowOverlay> overlay = nullptr);
    // A canvas without a window: each drawn frame is read back into `frames`.
    std::shared_ptr<CanvasLink> addOffscreen(std::shared_ptr<VisualRenderer> renderer, std::shared_ptr<FrameMailbox> frames);
    // Returns after the render thread has finished any frame of the link and released its surface.
    void remove(const std::shared_ptr<CanvasLink>& link);

    void stop();

private:
    void run();
    void post(std::function<void()> task);
    std::shared_ptr<CanvasLink> enlist(std::shared_ptr<CanvasLink> link);
    void draw(CanvasLink& link, double now);
    void present(CanvasLink& link);

    std::binary_semaphore started_{0};
    std::mutex lock_;
    std::condition_variable wake_;
    std::vector<std::function<void()>> tasks_;
    std::vector<std::shared_ptr<CanvasLink>> links_;  // render thread only
    bool stopping_ = false;
    std::atomic<bool> stopped_{false};
    std::unique_ptr<GlContext> context_;
    GlName vertexArray_;
    std::thread thread_;
};

}  // namespace quellton
