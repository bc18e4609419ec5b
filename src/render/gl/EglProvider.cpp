#include "EglProvider.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

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

class EglContext : public GlContext {
public:
    EglContext(EGLDisplay display, EGLContext context) : display_(display), context_(context) {}
    ~EglContext() override {
        if (eglGetCurrentContext() == context_) eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display_, context_);
    }
    bool makeCurrent() override { return eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_); }
    bool makeCurrent(GlWindowSurface& surface) override {
        const EGLSurface s = static_cast<EglWindowSurface&>(surface).handle();
        if (!eglMakeCurrent(display_, s, s, context_)) return false;
        eglSwapInterval(display_, 0);  // frames are paced by their deadlines, not by waiting in swap
        // A context first made current without a surface keeps GL_NONE as the window's draw buffer.
        glDrawBuffer(GL_BACK);
        glReadBuffer(GL_BACK);
        return true;
    }
    void swapBuffers(GlWindowSurface& surface) override {
        eglSwapBuffers(display_, static_cast<EglWindowSurface&>(surface).handle());
    }
    void doneCurrent() override { eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT); }

private:
    EGLDisplay display_;
    EGLContext context_;
};

}  // namespace

EglWindowSurface::EglWindowSurface(void* display, void* surface, std::function<void(int, int)> resize,
                                   std::function<void()> release)
    : display_(display), surface_(surface), resize_(std::move(resize)), release_(std::move(release)) {}

EglWindowSurface::~EglWindowSurface() {
    eglDestroySurface(display_, surface_);
    if (release_) release_();
}

void EglWindowSurface::resize(int width, int height) {
    if (!resize_ || (width == width_ && height == height_)) return;
    resize_(width, height);
    width_ = width;
    height_ = height;
}

std::unique_ptr<EglProvider> EglProvider::open(void* display, std::shared_ptr<EglWindowSystem> windows,
                                               std::string* error) {
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
    return std::make_unique<EglProvider>(display, root, std::move(windows));
}

std::unique_ptr<EglProvider> EglProvider::headless(std::string* error) {
    return open(headlessDisplay(), nullptr, error);
}

namespace {

EGLDisplay platformDisplay(EGLenum platform, void* native) {
    EGLDisplay d = eglGetPlatformDisplayEXT(platform, native, nullptr);
    return d != EGL_NO_DISPLAY && eglInitialize(d, nullptr, nullptr) ? d : EGL_NO_DISPLAY;
}

}  // namespace

std::unique_ptr<EglProvider> EglProvider::onPlatform(unsigned platform, void* nativeDisplay,
                                                     std::shared_ptr<EglWindowSystem> windows, std::string* error) {
    return open(platformDisplay(platform, nativeDisplay), std::move(windows), error);
}

EglProvider::EglProvider(void* display, void* root, std::shared_ptr<EglWindowSystem> windows)
    : display_(display), root_(root), windows_(std::move(windows)) {}

EglProvider::~EglProvider() { eglDestroyContext(display_, root_); }

std::unique_ptr<GlContext> EglProvider::createShared() {
    eglBindAPI(EGL_OPENGL_API);  // the bound API is per thread
    EGLContext context = makeContext(display_, root_);
    if (context == EGL_NO_CONTEXT) return nullptr;
    return std::make_unique<EglContext>(display_, context);
}

std::unique_ptr<GlWindowSurface> EglProvider::createWindowSurface(std::uintptr_t nativeWindow) {
    return windows_ ? windows_->createSurface(display_, nativeWindow) : nullptr;
}

}  // namespace quellton
