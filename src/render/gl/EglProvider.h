#pragma once

#include <memory>
#include <string>

#include "GlContext.h"

namespace quellton {

// OpenGL through EGL: without any window system (command line, tests), on an X11 display or on a
// Wayland connection, where surfaceless contexts and window surfaces share one display and so one
// share group.
class EglProvider : public GlContextProvider {
public:
    // nullptr with a reason in error when EGL or a 3.3 core context is not available.
    static std::unique_ptr<EglProvider> headless(std::string* error = nullptr);
    static std::unique_ptr<EglProvider> forX11(void* xlibDisplay, std::string* error = nullptr);
    // Window surfaces are then made for wl_surfaces of this connection.
    static std::unique_ptr<EglProvider> forWayland(void* wlDisplay, std::string* error = nullptr);

    enum class Windows { none, x11, wayland };
    // Takes ownership of the root context; `native` is the Xlib display or the wl_display.
    EglProvider(void* display, void* root, Windows windows = Windows::none, void* native = nullptr);
    ~EglProvider() override;

    std::unique_ptr<GlContext> createShared() override;
    std::unique_ptr<GlWindowSurface> createWindowSurface(std::uintptr_t nativeWindow) override;

private:
    static std::unique_ptr<EglProvider> open(void* display, Windows windows, void* native, std::string* error);
    std::unique_ptr<GlWindowSurface> createX11Surface(std::uintptr_t window);
    std::unique_ptr<GlWindowSurface> createWaylandSurface(std::uintptr_t surface);

    void* display_;
    void* root_;
    Windows windows_;
    void* native_;
};

}  // namespace quellton
