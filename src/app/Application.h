#pragma once

#include <span>
#include <string>

namespace quellton::Application {

// The interactive application: checks for a display, becomes the one instance of the session
// (or hands over to the running one), launches and runs until quit. Returns the exit status.
int run(int& argc, char** argv, std::span<const std::string> args);
// Stops the process-wide instances in their written order; again is harmless.
void stopProcessWide();

inline constexpr const char* noDisplayMessage = "Quellton braucht eine grafische Sitzung (X11 oder Wayland).";

}  // namespace quellton::Application
