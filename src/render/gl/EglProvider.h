#pragma once

#include <memory>
#include <string>

#include "GlContext.h"

namespace quellton {

// OpenGL through EGL: without any window system (command line, tests) or on an X11 display,
// where surfaceless contexts and window surfaces share one display and so one share group.
class EglProvider : public GlContextProvider {
public:
    // nullptr with a reason in error when EGL or a 3.3 core context is not available.
    static std::unique_ptr<EglProvider> headless(std::string* error = nullptr);
    static std::unique_ptr<EglProvider> forX11(void* xlibDisplay, std::string* error = nullptr);

    EglProvider(void* display, void* root, void* xlibDisplay = nullptr);  // takes ownership of the root context
    ~EglProvider() override;

    std::unique_ptr<GlContext> createShared() override;
    std::unique_ptr<GlWindowSurface> createWindowSurface(std::uintptr_t nativeWindow) override;

private:
    static std::unique_ptr<EglProvider> open(void* display, void* xlibDisplay, std::string* error);
    void* display_;
    void* root_;
    void* xlibDisplay_;
};

}  // namespace quellton
