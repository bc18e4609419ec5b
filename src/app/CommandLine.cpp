#include "CommandLine.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>

#include "Catalog.h"
#include "Palette.h"

namespace quellton {

std::optional<double> parseNumber(const std::string& text) {
    if (text.empty() || std::isspace(static_cast<unsigned char>(text.front()))) return std::nullopt;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (end != text.c_str() + text.size()) return std::nullopt;
    return value;
}

std::optional<int> parsePaletteIndex(const std::string& text, int paletteCount) {
    std::size_t digits = (!text.empty() && (text[0] == '+' || text[0] == '-')) ? 1 : 0;
    if (digits == text.size()) return std::nullopt;
    if (!std::all_of(text.begin() + long(digits), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    errno = 0;
    const long long value = std::strtoll(text.c_str(), nullptr, 10);
    if (errno == ERANGE || value < 0 || value >= paletteCount) return std::nullopt;
    return int(value);
}

namespace {

// Index of the first occurrence of flag, or -1.
long firstIndex(std::span<const std::string> args, const char* flag) {
    const auto it = std::find(args.begin() + (args.empty() ? 0 : 1), args.end(), flag);
    return it == args.end() ? -1 : long(it - args.begin());
}

// The n operands after the flag at index i, when there are that many.
bool hasOperands(std::span<const std::string> args, long i, long n) { return i >= 0 && long(args.size()) - i - 1 >= n; }

std::optional<StillMode> stillMode(std::span<const std::string> args) {
    const long i = firstIndex(args, "--still");
    if (!hasOperands(args, i, 5)) return std::nullopt;
    const std::string& id = args[i + 1];
    if (!Catalog::byID(id)) return std::nullopt;
    const auto width = parseNumber(args[i + 2]), height = parseNumber(args[i + 3]), time = parseNumber(args[i + 4]);
    if (!width || !height || !time) return std::nullopt;
    StillMode mode{id, *width, *height, *time, args[i + 5], std::nullopt};
    if (hasOperands(args, i, 6)) mode.palette = parsePaletteIndex(args[i + 6], int(Palette::all().size()));
    return mode;
}

}  // namespace

CommandLineMode recognizeMode(std::span<const std::string> args) {
    if (const long i = firstIndex(args, "--snapshots"); hasOperands(args, i, 1)) {
        SnapshotsMode mode{args[i + 1], 6.3};
        if (hasOperands(args, i, 2))
            if (const auto t = parseNumber(args[i + 2])) mode.time = *t;
        return mode;
    }
    if (firstIndex(args, "--selftest") >= 0) return SelftestMode{};
    if (auto still = stillMode(args)) return *still;
    if (firstIndex(args, "--bench") >= 0) return BenchMode{};
    if (const long i = firstIndex(args, "--icon"); hasOperands(args, i, 1)) return IconMode{args[i + 1]};
    return NoMode{};
}

}  // namespace quellton
