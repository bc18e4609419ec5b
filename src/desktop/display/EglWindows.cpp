#include "EglWindows.h"

#include <X11/Xlib.h>
#include <epoxy/egl.h>
#include <wayland-egl.h>

#include <span>

namespace quellton {

namespace {

// The configs of an 8-bit RGB OpenGL window.
std::span<EGLConfig> windowConfigs(EGLDisplay display, std::span<EGLConfig, 128> configs) {
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_WINDOW_BIT, EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8,
                             EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, configs.data(), EGLint(configs.size()), &count)) return {};
    return configs.first(std::size_t(count));
}

EGLint attribute(EGLDisplay display, EGLConfig config, EGLint name) {
    EGLint value = 0;
    eglGetConfigAttrib(display, config, name, &value);
    return value;
}

}  // namespace

std::unique_ptr<EglWindowSurface> X11EglWindows::createSurface(void* display, std::uintptr_t window) {
    // Only a config with the window's own visual presents correctly (a deeper one fails silently).
    XWindowAttributes attributes{};
    if (!XGetWindowAttributes(static_cast<Display*>(display_), Window(window), &attributes) || !attributes.visual)
        return nullptr;
    EGLConfig storage[128];
    for (EGLConfig config : windowConfigs(display, storage)) {
        if (VisualID(attribute(display, config, EGL_NATIVE_VISUAL_ID)) != XVisualIDFromVisual(attributes.visual))
            continue;
        EGLSurface surface = eglCreateWindowSurface(display, config, static_cast<EGLNativeWindowType>(window), nullptr);
        if (surface != EGL_NO_SURFACE) return std::make_unique<EglWindowSurface>(display, surface);
    }
    return nullptr;
}

std::unique_ptr<EglWindowSurface> WaylandEglWindows::createSurface(void* display, std::uintptr_t surface) {
    EGLConfig storage[128];
    const std::span<EGLConfig> configs = windowConfigs(display, storage);
    if (configs.empty()) return nullptr;
    // No alpha: an XRGB buffer is opaque, so the compositor never blends the wallpaper with what lies below.
    EGLConfig chosen = configs.front();
    for (EGLConfig config : configs) {
        if (attribute(display, config, EGL_ALPHA_SIZE) == 0 && attribute(display, config, EGL_RED_SIZE) == 8) {
            chosen = config;
            break;
        }
    }
    wl_egl_window* window = wl_egl_window_create(reinterpret_cast<wl_surface*>(surface), 1, 1);
    if (!window) return nullptr;
    EGLSurface s = eglCreateWindowSurface(display, chosen, reinterpret_cast<EGLNativeWindowType>(window), nullptr);
    if (s == EGL_NO_SURFACE) {
        wl_egl_window_destroy(window);
        return nullptr;
    }
    // Mesa reads the window's size while it swaps, so it changes on the drawing thread only.
    return std::make_unique<EglWindowSurface>(
        display, s, [window](int width, int height) { wl_egl_window_resize(window, width, height, 0, 0); },
        [window] { wl_egl_window_destroy(window); });
}

}  // namespace quellton
