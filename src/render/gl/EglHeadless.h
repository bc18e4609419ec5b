#pragma once

#include <memory>
#include <string>

#include "GlContext.h"

namespace quellton {

// Contexts without any window system: EGL on the surfaceless or device platform, no surface.
class EglHeadless : public GlContextProvider {
public:
    // nullptr with a reason in error when EGL or a 3.3 core context is not available.
    static std::unique_ptr<EglHeadless> create(std::string* error = nullptr);
    ~EglHeadless() override;

    EglHeadless(void* display, void* root);  // takes ownership of the root context

    std::unique_ptr<GlContext> createShared() override;
    const char* name() const override { return "EGL"; }

private:
    void* display_;
    void* root_;
};

}  // namespace quellton
