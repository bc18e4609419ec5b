#include <iostream>
#include <string>
#include <vector>

#include "Application.h"
#include "CommandLine.h"
#include "CommandLineHelp.h"
#include "CommandLineTools.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv, argv + argc);
    // Command-line modes run before any window, tray item or audio capture exists.
    if (const auto status = quellton::CommandLineTools::runIfRequested(args)) return *status;
    for (const std::string& option : quellton::ignoredOptions(args))
        std::cerr << quellton::CommandLineHelp::ignoredOptionLine(option) << std::endl;
    return quellton::Application::run(argc, argv, args);
}
