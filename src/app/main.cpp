#include <string>
#include <vector>

#include "Application.h"
#include "CommandLineTools.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv, argv + argc);
    // Command-line modes run before any window, tray item or audio capture exists.
    if (const auto status = quellton::CommandLineTools::runIfRequested(args)) return *status;
    return quellton::Application::run(argc, argv, args);
}
