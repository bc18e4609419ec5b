#include "FrameStats.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <numeric>

namespace quellton {

std::optional<FrameSummary> FrameStats::record(double interval, double expected, double now) {
    if (!(interval < 1.0)) return std::nullopt;
    intervals_.push_back(interval);
    if (!(now - started_ > 5.0)) return std::nullopt;

    std::vector<double> sorted = intervals_;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t n = sorted.size();
    FrameSummary s;
    s.count = int(n);
    s.late = int(std::count_if(sorted.begin(), sorted.end(), [&](double i) { return i > expected * 1.5; }));
    s.meanMs = std::accumulate(sorted.begin(), sorted.end(), 0.0) / double(n) * 1000.0;
    s.p99Ms = sorted[std::min(std::size_t(double(n) * 0.99), n - 1)] * 1000.0;
    s.maxMs = sorted.back() * 1000.0;
    intervals_.clear();  // keeps its capacity
    started_ = now;
    return s;
}

std::string frameLogLine(std::string_view isoDate, std::string_view role, const FrameSummary& s) {
    char buffer[256];
    std::snprintf(buffer, sizeof buffer, "%.*s %.*s bilder=%d mittel=%.2fms p99=%.2fms max=%.2fms ausgelassen=%d\n",
                  int(isoDate.size()), isoDate.data(), int(role.size()), role.data(), s.count, s.meanMs, s.p99Ms,
                  s.maxMs, s.late);
    return buffer;
}

std::string isoDateNow() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return buffer;
}

std::filesystem::path frameLogPath() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    const std::filesystem::path base = state && *state ? std::filesystem::path(state)
                                                       : std::filesystem::path(home ? home : "") / ".local/state";
    return base / "Quellton" / "Quellton-Bilder.log";
}

void appendFrameLogLine(const std::filesystem::path& file, const std::string& line) {
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    std::ofstream out(file, std::ios::app | std::ios::binary);
    out << line;
}

}  // namespace quellton
