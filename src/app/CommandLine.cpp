#include "CommandLine.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "Catalog.h"
#include "Palette.h"

namespace quellton {

namespace {

// An optional sign followed by at least one digit and nothing else.
bool isInteger(const std::string& text) {
    const std::size_t sign = (!text.empty() && (text[0] == '+' || text[0] == '-')) ? 1 : 0;
    return text.size() > sign &&
           std::all_of(text.begin() + long(sign), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::optional<double> parseNumber(const std::string& text) {
    if (text.empty() || std::isspace(static_cast<unsigned char>(text.front()))) return std::nullopt;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (end != text.c_str() + text.size()) return std::nullopt;
    return value;
}

std::optional<int> parsePaletteIndex(const std::string& text, int paletteCount) {
    if (!isInteger(text)) return std::nullopt;
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
    if (firstIndex(args, "--help") >= 0 || firstIndex(args, "-h") >= 0) return HelpMode{};
    if (firstIndex(args, "--version") >= 0) return VersionMode{};
    return NoMode{};
}

namespace {

constexpr std::string_view ownFlags[] = {"--snapshots", "--selftest", "--still", "--bench",    "--icon",
                                         "--help",      "-h",         "--version", "--autostart",
                                         "--gnome-shell-wallpaper"};

// How many of the arguments after one of our flags are its operands.
std::size_t ownOperands(std::string_view flag, std::span<const std::string> after) {
    std::size_t count = 0;
    if (flag == "--icon") count = 1;
    if (flag == "--snapshots") count = after.size() >= 2 && parseNumber(after[1]) ? 2 : 1;
    if (flag == "--still") count = after.size() >= 6 && isInteger(after[5]) ? 6 : 5;
    return std::min(count, after.size());
}

// What QApplication removes from the argument list on X11: QGuiApplication's options, the xcb
// platform's (among them the aliases -geometry, -title and -icon) and QApplication's. Each is
// also taken with two dashes.
enum class Takes { flag, value, valueOrJoined };
struct QtOption {
    std::string_view name;
    Takes takes;
};
constexpr QtOption qtOptions[] = {
    {"platform", Takes::value},       {"platformpluginpath", Takes::value},
    {"platformtheme", Takes::value},  {"plugin", Takes::value},
    {"qwindowgeometry", Takes::value}, {"qwindowtitle", Takes::value},
    {"qwindowicon", Takes::value},    {"geometry", Takes::value},
    {"title", Takes::value},          {"icon", Takes::value},
    {"display", Takes::value},        {"name", Takes::value},
    {"visual", Takes::value},         {"session", Takes::value},
    {"style", Takes::valueOrJoined},  {"stylesheet", Takes::valueOrJoined},
    {"qmljsdebugger", Takes::valueOrJoined},
    {"reverse", Takes::flag},         {"testability", Takes::flag},
    {"widgetcount", Takes::flag},     {"nograb", Takes::flag},
    {"dograb", Takes::flag},          {"qdevel", Takes::flag},
    {"qdebug", Takes::flag},
};

// How many arguments from this one on Qt takes: 0 when it is no option of Qt's.
std::size_t qtTakes(std::string_view arg, bool valueFollows) {
    std::string_view name = arg.substr(arg.starts_with("--") ? 2 : 1);
    for (const QtOption& option : qtOptions) {
        if (name == option.name) return option.takes != Takes::flag && valueFollows ? 2 : 1;
        if (option.takes == Takes::valueOrJoined && name.starts_with(option.name) &&
            name.substr(option.name.size()).starts_with('='))
            return 1;
    }
    return 0;
}

}  // namespace

std::vector<std::string> ignoredOptions(std::span<const std::string> args) {
    std::vector<std::string> ignored;
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg.size() < 2 || arg[0] != '-') continue;
        if (std::find(std::begin(ownFlags), std::end(ownFlags), arg) != std::end(ownFlags)) {
            i += ownOperands(arg, args.subspan(i + 1));
        } else if (const std::size_t taken = qtTakes(arg, i + 1 < args.size())) {
            i += taken - 1;
        } else {
            ignored.push_back(arg);
        }
    }
    return ignored;
}

}  // namespace quellton
