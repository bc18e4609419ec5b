#include "XdgAutostart.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>

namespace quellton {

namespace fs = std::filesystem;

namespace {

const char* const entryName = QUELLTON_APP_ID ".desktop";

fs::path configHome() {
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg && fs::path(xdg).is_absolute())
        return xdg;
    const char* home = std::getenv("HOME");
    return fs::path(home ? home : "") / ".config";
}

// Exec quoting: inside double quotes ", `, $ and \ take a backslash; % is doubled for field codes.
// The whole value then gets the string escaping of desktop entries, which doubles every backslash.
std::string execArgument(const std::string& path) {
    std::string quoted = "\"";
    for (char c : path) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') quoted += '\\';
        if (c == '%') quoted += '%';
        quoted += c;
    }
    quoted += '"';
    std::string escaped;
    for (char c : quoted) {
        if (c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

bool hiddenEntry(std::istream& in) {
    std::string line;
    while (std::getline(in, line))
        if (line == "Hidden=true" || line == "X-GNOME-Autostart-enabled=false") return true;
    return false;
}

}  // namespace

XdgAutostart::XdgAutostart(fs::path directory, fs::path program)
    : directory(std::move(directory)), program(std::move(program)) {}

XdgAutostart XdgAutostart::forCurrentUser() {
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    return XdgAutostart(configHome() / "autostart", error ? fs::path("quellton") : programFromLink(self.string()));
}

// A package upgrade replaces the binary under the running program, and the kernel then names it
// "<path> (deleted)"; the new binary at that path is the one to start at the next login.
fs::path XdgAutostart::programFromLink(std::string link) {
    constexpr std::string_view replaced = " (deleted)";
    if (link.ends_with(replaced)) link.erase(link.size() - replaced.size());
    return link;
}

fs::path XdgAutostart::entryPath() const { return directory / entryName; }

std::string XdgAutostart::entryText(const fs::path& program) {
    std::ostringstream text;
    text << "[Desktop Entry]\n"
         << "Type=Application\n"
         << "Name=Quellton\n"
         << "Icon=" QUELLTON_APP_ID "\n"
         << "Exec=" << execArgument(program.string()) << " --autostart\n"
         << "Terminal=false\n"
         << "X-GNOME-Autostart-enabled=true\n";
    return text.str();
}

// A user who disabled the entry in the desktop's startup settings has it marked hidden, not deleted.
bool XdgAutostart::isRegistered() {
    std::ifstream in(entryPath());
    return in && !hiddenEntry(in);
}

bool XdgAutostart::registerItem() {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) return false;
    // Written beside the target and renamed, so a half-written entry never starts anything.
    const fs::path temporary = entryPath().string() + ".tmp";
    {
        std::ofstream out(temporary, std::ios::trunc);
        out << entryText(program);
        if (!out.flush()) {
            fs::remove(temporary, error);
            return false;
        }
    }
    fs::rename(temporary, entryPath(), error);
    if (!error) return true;
    std::error_code ignored;
    fs::remove(temporary, ignored);
    return false;
}

bool XdgAutostart::unregisterItem() {
    std::error_code error;
    fs::remove(entryPath(), error);
    return !error;
}

}  // namespace quellton
