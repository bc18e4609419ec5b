#include "AppearanceRules.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string>
#include <vector>

namespace quellton {

namespace {

std::string lower(std::string_view text) {
    std::string out(text);
    std::ranges::transform(out, out.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return out;
}

std::string_view trim(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    return text;
}

std::optional<double> number(std::string_view text) {
    text = trim(text);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// "r,g,b" with 0..255 components: dark when its relative luminance is below the middle.
std::optional<bool> darkFromRgb(std::string_view text) {
    double channels[3];
    for (double& channel : channels) {
        const std::size_t comma = text.find(',');
        const auto value = number(text.substr(0, comma));
        if (!value) return std::nullopt;
        channel = *value / 255.0;
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return 0.2126 * channels[0] + 0.7152 * channels[1] + 0.0722 * channels[2] < 0.5;
}

}  // namespace

std::optional<bool> darkFromPortalScheme(std::uint32_t scheme) {
    if (scheme == 1) return true;
    if (scheme == 2) return false;
    return std::nullopt;
}

std::optional<bool> darkFromGnome(std::string_view colorScheme, std::string_view gtkTheme) {
    if (colorScheme == "prefer-dark") return true;
    if (colorScheme == "prefer-light") return false;
    const std::string theme = lower(trim(gtkTheme));
    if (theme.ends_with("-dark") || theme.ends_with(":dark")) return true;
    if (!theme.empty() || colorScheme == "default") return false;
    return std::nullopt;
}

AppearanceHints hintsFromKdeGlobals(std::string_view text) {
    AppearanceHints hints;
    std::string group;
    std::optional<bool> schemeNameDark;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trim(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            group = std::string(line.substr(1, line.find(']') - 1));
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string_view key = trim(line.substr(0, equals));
        const std::string_view value = trim(line.substr(equals + 1));
        if (group == "Colors:Window" && key == "BackgroundNormal")
            hints.dark = darkFromRgb(value);
        else if (group == "General" && key == "ColorScheme")
            schemeNameDark = lower(value).find("dark") != std::string::npos;
        else if (group == "KDE" && key == "AnimationDurationFactor")
            if (const auto factor = number(value)) hints.reduceMotion = *factor <= 0.0;
    }
    if (!hints.dark) hints.dark = schemeNameDark;  // the colours themselves are the better witness
    return hints;
}

AppearanceHints firstAnswers(std::initializer_list<AppearanceHints> sources) {
    AppearanceHints result;
    for (const AppearanceHints& s : sources) {
        if (!result.dark) result.dark = s.dark;
        if (!result.reduceMotion) result.reduceMotion = s.reduceMotion;
    }
    return result;
}

}  // namespace quellton
