#include "CommandLineTools.h"

#include <QCoreApplication>

#include <iostream>

#include "CommandLine.h"
#include "CommandLineHelp.h"
#include "OfflineTools.h"
#include "SelfTest.h"
#include "ShaderLibrary.h"

namespace quellton::CommandLineTools {

namespace {

struct ModeRunner {
    std::optional<int> operator()(const NoMode&) const { return std::nullopt; }
    std::optional<int> operator()(const SelftestMode&) const { return selftest(std::cout); }
    std::optional<int> operator()(const SnapshotsMode& m) const {
        return OfflineTools::snapshots(ShaderLibrary::shared(), m.folder, m.time, std::cout);
    }
    std::optional<int> operator()(const StillMode& m) const { return OfflineTools::still(ShaderLibrary::shared(), m); }
    std::optional<int> operator()(const BenchMode&) const { return OfflineTools::bench(ShaderLibrary::shared(), std::cout); }
    std::optional<int> operator()(const IconMode& m) const { return OfflineTools::icon(ShaderLibrary::shared(), m.output); }
    std::optional<int> operator()(const HelpMode&) const {
        std::cout << CommandLineHelp::usage() << std::flush;
        return 0;
    }
    std::optional<int> operator()(const VersionMode&) const {
        std::cout << CommandLineHelp::version() << std::endl;
        return 0;
    }
};

}  // namespace

std::optional<int> runIfRequested(std::span<const std::string> args) {
    const CommandLineMode mode = recognizeMode(args);
    if (std::holds_alternative<NoMode>(mode)) return std::nullopt;
    // Qt's image plugins that writing stills may load are unloaded cleanly only with an application object.
    int argc = 1;
    char name[] = "quellton";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    return std::visit(ModeRunner{}, mode);
}

}  // namespace quellton::CommandLineTools
