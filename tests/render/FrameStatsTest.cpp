#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include <unistd.h>

#include <cmath>

#include "FrameStats.h"

using namespace quellton;

TEST(FrameStats, SummarisesEveryFiveSecondsAtSixtyFramesPerSecond) {
    FrameStats stats(0.0);
    std::optional<FrameSummary> summary;
    double now = 0;
    int frames = 0;
    while (!summary) {
        now += 1.0 / 60;
        ++frames;
        summary = stats.record(1.0 / 60, 1.0 / 60, now);
    }
    EXPECT_EQ(frames, 301);  // the first frame past five seconds closes the window
    EXPECT_EQ(summary->count, 301);
    EXPECT_NEAR(summary->meanMs, 16.67, 0.01);
    EXPECT_EQ(summary->late, 0);
    // The next window starts empty.
    EXPECT_FALSE(stats.record(1.0 / 60, 1.0 / 60, now + 0.1));
}

TEST(FrameStats, LateFramesPercentileAndMaximum) {
    FrameStats stats(0.0);
    std::vector<double> intervals(100, 0.010);
    intervals[10] = 0.026;  // late: more than 1.5 × 1/60
    intervals[20] = 0.024;  // not late
    intervals[30] = 0.5;
    std::optional<FrameSummary> summary;
    for (std::size_t i = 0; i < intervals.size(); ++i)
        summary = stats.record(intervals[i], 1.0 / 60, i + 1 == intervals.size() ? 6.0 : 1.0);
    ASSERT_TRUE(summary);
    EXPECT_EQ(summary->count, 100);
    EXPECT_EQ(summary->late, 2);
    EXPECT_DOUBLE_EQ(summary->p99Ms, 500.0);  // for 100 intervals the 99th percentile is the largest
    EXPECT_DOUBLE_EQ(summary->maxMs, 500.0);
}

TEST(FrameStats, PausesNeverEnterTheStatistics) {
    FrameStats stats(0.0);
    EXPECT_FALSE(stats.record(20.0, 1.0 / 60, 25.0));  // a 20 s pause: no interval, no summary
    EXPECT_FALSE(stats.record(std::nan(""), 1.0 / 60, 26.0));
    const auto summary = stats.record(0.016, 1.0 / 60, 26.1);
    ASSERT_TRUE(summary);
    EXPECT_EQ(summary->count, 1);
}

TEST(FrameStats, LineFormat) {
    const FrameSummary s{300, 16.666, 17.5, 33.33333, 1};
    EXPECT_EQ(frameLogLine("2026-03-01T18:04:05Z", "hintergrund", s),
              "2026-03-01T18:04:05Z hintergrund bilder=300 mittel=16.67ms p99=17.50ms max=33.33ms ausgelassen=1\n");
    EXPECT_TRUE(std::regex_match(isoDateNow(), std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ)")));
}

TEST(FrameStats, LinesAreAppendedAndTheFileIsRecreated) {
    const auto dir = std::filesystem::temp_directory_path() / ("quellton-framelog-" + std::to_string(::getpid()));
    const auto file = dir / "Quellton" / "Quellton-Bilder.log";
    appendFrameLogLine(file, "eins\n");
    appendFrameLogLine(file, "zwei\n");
    std::ifstream in(file);
    std::string text((std::istreambuf_iterator<char>(in)), {});
    EXPECT_EQ(text, "eins\nzwei\n");
    std::filesystem::remove(file);
    appendFrameLogLine(file, "drei\n");
    std::ifstream again(file);
    EXPECT_EQ(std::string((std::istreambuf_iterator<char>(again)), {}), "drei\n");
    std::filesystem::remove_all(dir);
    // A place that cannot be written loses the line quietly.
    appendFrameLogLine("/proc/quellton/nope.log", "vier\n");
}
