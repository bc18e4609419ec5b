#pragma once

#include <memory>

namespace quellton {

// An OpenGL 3.3 core context of the process's share group, used on one thread at a time.
class GlContext {
public:
    virtual ~GlContext() = default;
    virtual bool makeCurrent() = 0;
    virtual void doneCurrent() = 0;
};

// Makes contexts that share programs with one root context (headless EGL, or Qt in the application).
class GlContextProvider {
public:
    virtual ~GlContextProvider() = default;
    // A new context in the share group, or nullptr when none can be made.
    virtual std::unique_ptr<GlContext> createShared() = 0;
    // A short description of the driver, for diagnostics.
    virtual const char* name() const = 0;
};

}  // namespace quellton
