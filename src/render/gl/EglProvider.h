#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "GlContext.h"

namespace quellton {

// A window surface of an EGL display. What its window system keeps beside it (Wayland's
// wl_egl_window) comes in as `resize`, called on the drawing thread with the size of the buffers to
// come, and `release`, called once the EGL surface is gone.
class EglWindowSurface : public GlWindowSurface {
public:
    EglWindowSurface(void* display, void* surface, std::function<void(int, int)> resize = {},
                     std::function<void()> release = {});
    ~EglWindowSurface() override;
    void* handle() const { return surface_; }
    void resize(int width, int height) override;

private:
    void* display_;
    void* surface_;
    std::function<void(int, int)> resize_;
    std::function<void()> release_;
    int width_ = 0, height_ = 0;
};

// How the native windows of one window system become window surfaces of an EGL display.
class EglWindowSystem {
public:
    virtual ~EglWindowSystem() = default;
    // nullptr where the window cannot get one.
    virtual std::unique_ptr<EglWindowSurface> createSurface(void* display, std::uintptr_t nativeWindow) = 0;
};

// OpenGL through EGL: without any window system (command line, tests), or on a window system's
// display, where surfaceless contexts and window surfaces share one display and so one share group.
class EglProvider : public GlContextProvider {
public:
    // nullptr with a reason in error when EGL or a 3.3 core context is not available.
    static std::unique_ptr<EglProvider> headless(std::string* error = nullptr);
    // On the EGL platform `platform` (an EGL_PLATFORM_* value) of the connection `nativeDisplay`,
    // whose windows `windows` turns into surfaces.
    static std::unique_ptr<EglProvider> onPlatform(unsigned platform, void* nativeDisplay,
                                                   std::shared_ptr<EglWindowSystem> windows,
                                                   std::string* error = nullptr);

    // Takes ownership of the root context.
    EglProvider(void* display, void* root, std::shared_ptr<EglWindowSystem> windows = nullptr);
    ~EglProvider() override;

    std::unique_ptr<GlContext> createShared() override;
    std::unique_ptr<GlWindowSurface> createWindowSurface(std::uintptr_t nativeWindow) override;

private:
    static std::unique_ptr<EglProvider> open(void* display, std::shared_ptr<EglWindowSystem> windows,
                                             std::string* error);

    void* display_;
    void* root_;
    std::shared_ptr<EglWindowSystem> windows_;
};

}  // namespace quellton
