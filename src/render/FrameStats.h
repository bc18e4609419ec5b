#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quellton {

// Frame pacing of one renderer over a five-second window.
struct FrameSummary {
    int count = 0;
    double meanMs = 0, p99Ms = 0, maxMs = 0;
    int late = 0;  // intervals longer than 1.5 expected intervals
};

class FrameStats {
public:
    explicit FrameStats(double now) : started_(now) {}

    // Adds one frame interval; every five seconds it closes the window and returns its summary.
    // Gaps of a second or more (a pause) never enter the statistics.
    std::optional<FrameSummary> record(double interval, double expected, double now);

private:
    std::vector<double> intervals_;
    double started_;
};

// "<date> <role> bilder=… mittel=…ms p99=…ms max=…ms ausgelassen=…"
std::string frameLogLine(std::string_view isoDate, std::string_view role, const FrameSummary& s);
// The current time as 2026-03-01T18:04:05Z.
std::string isoDateNow();

std::filesystem::path frameLogPath();
// Appends the line, creating the file when needed; errors lose the line silently.
void appendFrameLogLine(const std::filesystem::path& file, const std::string& line);

}  // namespace quellton
