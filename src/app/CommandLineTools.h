#pragma once

#include <optional>
#include <span>
#include <string>

namespace quellton::CommandLineTools {

// Runs the mode the arguments select and returns its exit status; nothing when the application should start.
std::optional<int> runIfRequested(std::span<const std::string> args);

}  // namespace quellton::CommandLineTools
