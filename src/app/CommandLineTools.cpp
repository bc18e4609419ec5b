#include "CommandLineTools.h"

#include <iostream>

#include "CommandLine.h"
#include "SelfTest.h"

namespace quellton::CommandLineTools {

namespace {

int notBuiltYet() {
    std::cout << "Quellton: Standbilder können in dieser Version noch nicht gerendert werden." << std::endl;
    return 1;
}

struct ModeRunner {
    std::optional<int> operator()(const NoMode&) const { return std::nullopt; }
    std::optional<int> operator()(const SelftestMode&) const { return selftest(std::cout); }
    std::optional<int> operator()(const SnapshotsMode&) const { return notBuiltYet(); }
    std::optional<int> operator()(const StillMode&) const { return notBuiltYet(); }
    std::optional<int> operator()(const BenchMode&) const { return notBuiltYet(); }
    std::optional<int> operator()(const IconMode&) const { return notBuiltYet(); }
};

}  // namespace

std::optional<int> runIfRequested(std::span<const std::string> args) {
    return std::visit(ModeRunner{}, recognizeMode(args));
}

}  // namespace quellton::CommandLineTools
