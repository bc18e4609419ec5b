#include "EglProvider.h"

#include <X11/Xlib.h>
#include <epoxy/egl.h>
#include <epoxy/gl.h>
#include <wayland-egl.h>

#include <cstring>

namespace quellton {

namespace {

bool hasExtension(const char* list, const char* name) {
    if (!list) return false;
    const std::size_t n = std::strlen(name);
    for (const char* p = list; (p = std::strstr(p, name)); p += n)
        if ((p == list || p[-1] == ' ') && (p[n] == ' ' || p[n] == '\0')) return true;
    return false;
}

EGLDisplay headlessDisplay() {
    const char* clientExtensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (hasExtension(clientExtensions, "EGL_MESA_platform_surfaceless")) {
        EGLDisplay d = eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (d != EGL_NO_DISPLAY && eglInitialize(d, nullptr, nullptr)) return d;
    }
    // NVIDIA's driver offers devices instead of the surfaceless platform.
    if (hasExtension(clientExtensions, "EGL_EXT_platform_device") &&
        hasExtension(clientExtensions, "EGL_EXT_device_enumeration")) {
        EGLDeviceEXT devices[8];
        EGLint count = 0;
        if (eglQueryDevicesEXT(8, devices, &count))
            for (EGLint i = 0; i < count; ++i) {
                EGLDisplay d = eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr);
                if (d != EGL_NO_DISPLAY && eglInitialize(d, nullptr, nullptr)) return d;
            }
    }
    return EGL_NO_DISPLAY;
}

EGLContext makeContext(EGLDisplay display, EGLContext share) {
    const EGLint attributes[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 3,
                                 EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
    return eglCreateContext(display, EGL_NO_CONFIG_KHR, share, attributes);
}

class EglSurface : public GlWindowSurface {
public:
    // On Wayland the client sizes its buffers through `window`, which the surface then owns.
    EglSurface(EGLDisplay display, EGLSurface surface, wl_egl_window* window = nullptr)
        : display_(display), surface_(surface), window_(window) {}
    ~EglSurface() override {
        eglDestroySurface(display_, surface_);
        if (window_) wl_egl_window_destroy(window_);
    }
    EGLSurface handle() const { return surface_; }
    // Mesa reads the window's size while it swaps, so it is changed on the drawing thread only.
    void resize(int width, int height) override {
        if (!window_ || (width == width_ && height == height_)) return;
        wl_egl_window_resize(window_, width, height, 0, 0);
        width_ = width;
        height_ = height;
    }

private:
    EGLDisplay display_;
    EGLSurface surface_;
    wl_egl_window* window_;
    int width_ = 0, height_ = 0;
};

class EglContext : public GlContext {
public:
    EglContext(EGLDisplay display, EGLContext context) : display_(display), context_(context) {}
    ~EglContext() override {
        if (eglGetCurrentContext() == context_) eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display_, context_);
    }
    bool makeCurrent() override { return eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_); }
    bool makeCurrent(GlWindowSurface& surface) override {
        const EGLSurface s = static_cast<EglSurface&>(surface).handle();
        if (!eglMakeCurrent(display_, s, s, context_)) return false;
        eglSwapInterval(display_, 0);  // frames are paced by their deadlines, not by waiting in swap
        // A context first made current without a surface keeps GL_NONE as the window's draw buffer.
        glDrawBuffer(GL_BACK);
        glReadBuffer(GL_BACK);
        return true;
    }
    void swapBuffers(GlWindowSurface& surface) override {
        eglSwapBuffers(display_, static_cast<EglSurface&>(surface).handle());
    }
    void doneCurrent() override { eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT); }

private:
    EGLDisplay display_;
    EGLContext context_;
};

}  // namespace

std::unique_ptr<EglProvider> EglProvider::open(void* display, Windows windows, void* native, std::string* error) {
    auto fail = [error](const char* why) -> std::unique_ptr<EglProvider> {
        if (error) *error = why;
        return nullptr;
    };
    if (display == EGL_NO_DISPLAY) return fail("no EGL display");
    const char* extensions = eglQueryString(display, EGL_EXTENSIONS);
    if (!hasExtension(extensions, "EGL_KHR_no_config_context") || !hasExtension(extensions, "EGL_KHR_surfaceless_context"))
        return fail("EGL lacks contexts without a surface");
    if (!eglBindAPI(EGL_OPENGL_API)) return fail("EGL offers no desktop OpenGL");
    EGLContext root = makeContext(display, EGL_NO_CONTEXT);
    if (root == EGL_NO_CONTEXT) return fail("no OpenGL 3.3 core context");
    return std::make_unique<EglProvider>(display, root, windows, native);
}

std::unique_ptr<EglProvider> EglProvider::headless(std::string* error) {
    return open(headlessDisplay(), Windows::none, nullptr, error);
}

namespace {

EGLDisplay platformDisplay(EGLenum platform, void* native) {
    EGLDisplay d = eglGetPlatformDisplayEXT(platform, native, nullptr);
    return d != EGL_NO_DISPLAY && eglInitialize(d, nullptr, nullptr) ? d : EGL_NO_DISPLAY;
}

}  // namespace

std::unique_ptr<EglProvider> EglProvider::forX11(void* xlibDisplay, std::string* error) {
    return open(platformDisplay(EGL_PLATFORM_X11_KHR, xlibDisplay), Windows::x11, xlibDisplay, error);
}

std::unique_ptr<EglProvider> EglProvider::forWayland(void* wlDisplay, std::string* error) {
    return open(platformDisplay(EGL_PLATFORM_WAYLAND_KHR, wlDisplay), Windows::wayland, wlDisplay, error);
}

EglProvider::EglProvider(void* display, void* root, Windows windows, void* native)
    : display_(display), root_(root), windows_(windows), native_(native) {}

EglProvider::~EglProvider() { eglDestroyContext(display_, root_); }

std::unique_ptr<GlContext> EglProvider::createShared() {
    eglBindAPI(EGL_OPENGL_API);  // the bound API is per thread
    EGLContext context = makeContext(display_, root_);
    if (context == EGL_NO_CONTEXT) return nullptr;
    return std::make_unique<EglContext>(display_, context);
}

std::unique_ptr<GlWindowSurface> EglProvider::createWindowSurface(std::uintptr_t nativeWindow) {
    switch (windows_) {
    case Windows::x11: return createX11Surface(nativeWindow);
    case Windows::wayland: return createWaylandSurface(nativeWindow);
    case Windows::none: break;
    }
    return nullptr;
}

std::unique_ptr<GlWindowSurface> EglProvider::createX11Surface(std::uintptr_t nativeWindow) {
    // Only a config with the window's own visual presents correctly (a deeper one fails silently).
    XWindowAttributes attributes{};
    if (!XGetWindowAttributes(static_cast<Display*>(native_), Window(nativeWindow), &attributes) || !attributes.visual)
        return nullptr;
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_WINDOW_BIT, EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8,
                             EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig configs[128];
    EGLint count = 0;
    if (!eglChooseConfig(display_, wanted, configs, 128, &count)) return nullptr;
    for (EGLint i = 0; i < count; ++i) {
        EGLint visual = 0;
        eglGetConfigAttrib(display_, configs[i], EGL_NATIVE_VISUAL_ID, &visual);
        if (VisualID(visual) != XVisualIDFromVisual(attributes.visual)) continue;
        EGLNativeWindowType window = static_cast<EGLNativeWindowType>(nativeWindow);
        EGLSurface surface = eglCreateWindowSurface(display_, configs[i], window, nullptr);
        if (surface != EGL_NO_SURFACE) return std::make_unique<EglSurface>(display_, surface);
    }
    return nullptr;
}

std::unique_ptr<GlWindowSurface> EglProvider::createWaylandSurface(std::uintptr_t surface) {
    // No alpha: an XRGB buffer is opaque, so the compositor never blends the wallpaper with what lies below.
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_WINDOW_BIT, EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8,
                             EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig configs[128];
    EGLint count = 0;
    if (!eglChooseConfig(display_, wanted, configs, 128, &count) || count == 0) return nullptr;
    EGLConfig chosen = configs[0];
    for (EGLint i = 0; i < count; ++i) {
        EGLint alpha = 0, red = 0;
        eglGetConfigAttrib(display_, configs[i], EGL_ALPHA_SIZE, &alpha);
        eglGetConfigAttrib(display_, configs[i], EGL_RED_SIZE, &red);
        if (alpha == 0 && red == 8) {
            chosen = configs[i];
            break;
        }
    }
    wl_egl_window* window = wl_egl_window_create(reinterpret_cast<wl_surface*>(surface), 1, 1);
    if (!window) return nullptr;
    EGLSurface s = eglCreateWindowSurface(display_, chosen, reinterpret_cast<EGLNativeWindowType>(window), nullptr);
    if (s == EGL_NO_SURFACE) {
        wl_egl_window_destroy(window);
        return nullptr;
    }
    return std::make_unique<EglSurface>(display_, s, window);
}

}  // namespace quellton
