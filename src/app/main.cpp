#include <iostream>
#include <string>
#include <vector>

#include "CommandLineTools.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv, argv + argc);
    if (const auto status = quellton::CommandLineTools::runIfRequested(args)) return *status;
    std::cout << "Quellton: Die interaktive Anwendung ist noch nicht gebaut." << std::endl;
    return 0;
}
