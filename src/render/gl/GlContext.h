#pragma once

#include <cstdint>
#include <memory>

namespace quellton {

// A drawable window surface of the window system, presented by swapping.
class GlWindowSurface {
public:
    virtual ~GlWindowSurface() = default;
    // Sets the size in pixels of the buffers to come, where the client chooses it (Wayland);
    // called on the drawing thread before each frame.
    virtual void resize(int /*width*/, int /*height*/) {}
};

// An OpenGL 3.3 core context of the process's share group, used on one thread at a time.
class GlContext {
public:
    virtual ~GlContext() = default;
    // Current without a surface: offscreen work into framebuffers.
    virtual bool makeCurrent() = 0;
    // Current on a window surface, whose default framebuffer is then the window.
    virtual bool makeCurrent(GlWindowSurface& surface) = 0;
    virtual void swapBuffers(GlWindowSurface& surface) = 0;
    virtual void doneCurrent() = 0;
};

// Makes contexts that share programs with one root context, and window surfaces where there are windows.
class GlContextProvider {
public:
    virtual ~GlContextProvider() = default;
    // A new context in the share group, or nullptr when none can be made.
    virtual std::unique_ptr<GlContext> createShared() = 0;
    // A surface for a native window (an X11 window id or a wl_surface), or nullptr where there are none.
    virtual std::unique_ptr<GlWindowSurface> createWindowSurface(std::uintptr_t nativeWindow) = 0;
};

}  // namespace quellton
