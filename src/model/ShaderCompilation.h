#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace quellton {

// The part of the shader library the model drives at start.
class ShaderCompilation {
public:
    virtual ~ShaderCompilation() = default;
    // Compiles every visualization in the background, `first` before the others;
    // `completion` runs once on the main thread when all are done.
    virtual void compileAll(std::optional<std::string> first, std::function<void()> completion) = 0;
    // Visualization id -> compiler message, for every id that failed.
    virtual std::map<std::string, std::string> failures() = 0;
};

}  // namespace quellton
