#pragma once

#include "gl/EglProvider.h"

namespace quellton {

// X11 windows as EGL surfaces; the windows belong to `xlibDisplay`, our own connection.
class X11EglWindows : public EglWindowSystem {
public:
    explicit X11EglWindows(void* xlibDisplay) : display_(xlibDisplay) {}
    std::unique_ptr<EglWindowSurface> createSurface(void* display, std::uintptr_t window) override;

private:
    void* display_;
};

// wl_surfaces of our own Wayland connection as EGL surfaces, each through a wl_egl_window.
class WaylandEglWindows : public EglWindowSystem {
public:
    std::unique_ptr<EglWindowSurface> createSurface(void* display, std::uintptr_t surface) override;
};

}  // namespace quellton
