#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace quellton {

struct SnapshotsMode {
    std::filesystem::path folder;
    double time = 6.3;
};
struct SelftestMode {};
struct StillMode {
    std::string id;
    double width = 0, height = 0, time = 0;
    std::filesystem::path output;
    std::optional<int> palette;  // index into Palette::all(); absent means the visualization's own
};
struct BenchMode {};
struct IconMode {
    std::filesystem::path output;
};
struct HelpMode {};
struct VersionMode {};
struct NoMode {};

using CommandLineMode =
    std::variant<NoMode, SnapshotsMode, SelftestMode, StillMode, BenchMode, IconMode, HelpMode, VersionMode>;

// Picks the command-line mode from the full argument vector (element 0 is the program).
// The five working modes come first, so "--snapshots out --help" still exports; then help and version.
CommandLineMode recognizeMode(std::span<const std::string> args);

// The options of an application start that neither this program nor Qt's application object
// takes, in order. Operands of ours and of Qt's options are not options, even when they begin with "-".
std::vector<std::string> ignoredOptions(std::span<const std::string> args);

// A decimal floating-point number that makes up the whole text.
std::optional<double> parseNumber(const std::string& text);
// An optional sign followed by digits only, within 0 ... paletteCount - 1.
std::optional<int> parsePaletteIndex(const std::string& text, int paletteCount);

}  // namespace quellton
