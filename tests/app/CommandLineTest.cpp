#include <gtest/gtest.h>

#include "CommandLine.h"

using namespace quellton;

namespace {
CommandLineMode recognize(std::initializer_list<const char*> words) {
    std::vector<std::string> args{"quellton"};
    args.insert(args.end(), words.begin(), words.end());
    return recognizeMode(args);
}
}  // namespace

TEST(CommandLine, NoArgumentsStartTheApplication) {
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({})));
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--autostart"})));
    // A lone --snapshots exports nothing and recognition goes on.
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--snapshots"})));
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--icon"})));
}

TEST(CommandLine, SnapshotsTimeOperand) {
    auto mode = std::get<SnapshotsMode>(recognize({"--snapshots", "out", "2.5"}));
    EXPECT_EQ(mode.folder, "out");
    EXPECT_EQ(mode.time, 2.5);
    EXPECT_EQ(std::get<SnapshotsMode>(recognize({"--snapshots", "out", "abc"})).time, 6.3);
    EXPECT_EQ(std::get<SnapshotsMode>(recognize({"--snapshots", "out"})).time, 6.3);
    EXPECT_EQ(std::get<SnapshotsMode>(recognize({"--snapshots", "out", "2.5x"})).time, 6.3);
}

TEST(CommandLine, PriorityOrder) {
    EXPECT_TRUE(std::holds_alternative<SnapshotsMode>(recognize({"--selftest", "--snapshots", "out"})));
    EXPECT_TRUE(std::holds_alternative<BenchMode>(recognize({"--bench", "--icon", "x.png"})));
    EXPECT_TRUE(std::holds_alternative<SelftestMode>(recognize({"--icon", "x.png", "--selftest"})));
    EXPECT_TRUE(std::holds_alternative<SelftestMode>(
        recognize({"--still", "halo", "8", "8", "1", "o.png", "--selftest"})));
    EXPECT_TRUE(std::holds_alternative<StillMode>(recognize({"--bench", "--still", "halo", "8", "8", "1", "o.png"})));
    EXPECT_EQ(std::get<IconMode>(recognize({"--icon", "x.png"})).output, "x.png");
    // Flags match whole and case-sensitively.
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--SELFTEST", "--bench=1"})));
}

TEST(CommandLine, OnlyTheFirstOccurrenceCounts) {
    // The first --snapshots is the last argument, so the later one with a folder is not looked at.
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--icon"})));
    auto mode = std::get<SnapshotsMode>(recognize({"--snapshots", "a", "--snapshots", "b"}));
    EXPECT_EQ(mode.folder, "a");
    EXPECT_EQ(mode.time, 6.3);  // "--snapshots" is no number
    EXPECT_TRUE(std::holds_alternative<NoMode>(
        recognize({"--still", "nope", "8", "8", "1", "o.png", "--still", "halo", "8", "8", "1", "o.png"})));
}

TEST(CommandLine, StillOperands) {
    auto still = std::get<StillMode>(recognize({"--still", "halo", "800", "600", "1", "out.png"}));
    EXPECT_EQ(still.id, "halo");
    EXPECT_EQ(still.width, 800);
    EXPECT_EQ(still.height, 600);
    EXPECT_EQ(still.time, 1);
    EXPECT_EQ(still.output, "out.png");
    EXPECT_EQ(still.palette, std::nullopt);
    EXPECT_EQ(std::get<StillMode>(recognize({"--still", "halo", "800", "600", "1", "out.png", "99"})).palette,
              std::nullopt);
    EXPECT_EQ(std::get<StillMode>(recognize({"--still", "halo", "8", "6", "1", "o.png", "+3"})).palette, 3);
    EXPECT_EQ(std::get<StillMode>(recognize({"--still", "halo", "8", "6", "1", "o.png", "13"})).palette, 13);
    // Unknown id, a missing operand and an unparsable number each drop the flag.
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--still", "nope", "800", "600", "1", "out.png"})));
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--still", "halo", "800", "600", "1"})));
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--still", "halo", "800", "6x", "1", "out.png"})));
    EXPECT_TRUE(std::holds_alternative<BenchMode>(recognize({"--still", "halo", "8", "8", "t", "o.png", "--bench"})));
}

TEST(CommandLine, NumberParsing) {
    EXPECT_EQ(parseNumber("2.5"), 2.5);
    EXPECT_EQ(parseNumber("-1e3"), -1000.0);
    EXPECT_EQ(parseNumber(""), std::nullopt);
    EXPECT_EQ(parseNumber(" 2"), std::nullopt);
    EXPECT_EQ(parseNumber("2 "), std::nullopt);
    EXPECT_EQ(parseNumber("1.2.3"), std::nullopt);
}

TEST(CommandLine, PaletteIndexParsing) {
    EXPECT_EQ(parsePaletteIndex("0", 14), 0);
    EXPECT_EQ(parsePaletteIndex("+13", 14), 13);
    EXPECT_EQ(parsePaletteIndex("007", 14), 7);
    EXPECT_EQ(parsePaletteIndex("14", 14), std::nullopt);
    EXPECT_EQ(parsePaletteIndex("-1", 14), std::nullopt);
    EXPECT_EQ(parsePaletteIndex("-0", 14), 0);
    EXPECT_EQ(parsePaletteIndex("+", 14), std::nullopt);
    EXPECT_EQ(parsePaletteIndex("", 14), std::nullopt);
    EXPECT_EQ(parsePaletteIndex("3.0", 14), std::nullopt);
    EXPECT_EQ(parsePaletteIndex(" 3", 14), std::nullopt);
    EXPECT_EQ(parsePaletteIndex("99999999999999999999999", 14), std::nullopt);
}
