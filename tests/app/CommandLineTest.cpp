#include <gtest/gtest.h>

#include "CommandLine.h"
#include "CommandLineHelp.h"

using namespace quellton;

namespace {

using Words = std::vector<const char*>;

std::vector<std::string> withProgram(const Words& words) {
    std::vector<std::string> args{"quellton"};
    args.insert(args.end(), words.begin(), words.end());
    return args;
}

CommandLineMode recognize(const Words& words) { return recognizeMode(withProgram(words)); }

template <class Mode>
const std::size_t is = CommandLineMode(Mode{}).index();

}  // namespace

// The five working modes in their order, then help, then version; a flag counts whole, case-sensitively,
// at its first occurrence and only with all its operands.
TEST(CommandLine, TheFirstCompleteModeInPriorityOrderWins) {
    const Words still = {"--still", "halo", "8", "8", "1", "o.png"};
    const auto with = [&](Words before, const Words& after) {
        before.insert(before.end(), still.begin(), still.end());
        before.insert(before.end(), after.begin(), after.end());
        return before;
    };
    const struct {
        Words words;
        std::size_t mode;
    } cases[] = {
        {{}, is<NoMode>},
        {{"--autostart"}, is<NoMode>},
        {{"--snapshots"}, is<NoMode>},
        {{"--icon"}, is<NoMode>},
        {{"--SELFTEST", "--bench=1", "--HELP", "-help", "--version=1", "-v"}, is<NoMode>},
        {{"--selftest", "--snapshots", "out"}, is<SnapshotsMode>},
        {{"--snapshots", "out", "--help"}, is<SnapshotsMode>},
        {{"--icon", "x.png", "--selftest"}, is<SelftestMode>},
        {{"--version", "--selftest"}, is<SelftestMode>},
        {with({}, {"--selftest"}), is<SelftestMode>},
        {with({"--bench"}, {}), is<StillMode>},
        {with({"--help"}, {}), is<StillMode>},
        {{"--bench", "--icon", "x.png"}, is<BenchMode>},
        {{"-h", "--bench"}, is<BenchMode>},
        {{"--help", "--icon", "x.png"}, is<IconMode>},
        // An unknown id, a missing operand or an unparsable number drops --still; a later one is not looked at.
        {with({"--still", "nope", "8", "8", "1", "o.png"}, {}), is<NoMode>},
        {{"--still", "halo", "800", "600", "1"}, is<NoMode>},
        {{"--still", "halo", "800", "6x", "1", "out.png"}, is<NoMode>},
        {{"--still", "halo", "8", "8", "t", "o.png", "--bench"}, is<BenchMode>},
        {{"--still", "nope", "8", "8", "1", "o.png", "--help"}, is<HelpMode>},
        {{"--help"}, is<HelpMode>},
        {{"--autostart", "-h"}, is<HelpMode>},
        {{"--version", "--help"}, is<HelpMode>},
        {{"--version"}, is<VersionMode>},
    };
    for (const auto& [words, mode] : cases) EXPECT_EQ(recognize(words).index(), mode) << testing::PrintToString(words);
}

TEST(CommandLine, ModesCarryTheirOperands) {
    const struct {
        Words words;
        const char* folder;
        double time;
    } snapshots[] = {
        {{"--snapshots", "out", "2.5"}, "out", 2.5},
        {{"--snapshots", "out", "2.5x"}, "out", 6.3},
        {{"--snapshots", "out"}, "out", 6.3},
        {{"--snapshots", "a", "--snapshots", "b"}, "a", 6.3},
        {{"--snapshots", "--help"}, "--help", 6.3},  // an operand is no flag
    };
    for (const auto& [words, folder, time] : snapshots) {
        const auto mode = std::get<SnapshotsMode>(recognize(words));
        EXPECT_EQ(mode.folder, folder) << testing::PrintToString(words);
        EXPECT_EQ(mode.time, time) << testing::PrintToString(words);
    }
    EXPECT_EQ(std::get<IconMode>(recognize({"--icon", "x.png"})).output, "x.png");

    const auto still = std::get<StillMode>(recognize({"--still", "halo", "800", "600", "1", "out.png"}));
    EXPECT_EQ(std::tie(still.id, still.width, still.height, still.time), std::make_tuple("halo", 800, 600, 1));
    EXPECT_EQ(still.output, "out.png");
    EXPECT_EQ(still.palette, std::nullopt);
    const auto palette = [](const char* word) {
        return std::get<StillMode>(recognize({"--still", "halo", "8", "6", "1", "o.png", word})).palette;
    };
    EXPECT_EQ(palette("13"), 13);
    EXPECT_EQ(palette("99"), std::nullopt);
}

TEST(CommandLine, NumbersAndPaletteIndicesAreWholeWords) {
    EXPECT_EQ(parseNumber("2.5"), 2.5);
    EXPECT_EQ(parseNumber("-1e3"), -1000.0);
    for (const char* bad : {"", " 2", "2 ", "1.2.3"}) EXPECT_EQ(parseNumber(bad), std::nullopt) << bad;

    const std::pair<const char*, std::optional<int>> indices[] = {
        {"0", 0}, {"+13", 13}, {"007", 7}, {"-0", 0}, {"14", {}}, {"-1", {}}, {"+", {}}, {"", {}}, {"3.0", {}}, {" 3", {}},
        {"99999999999999999999999", {}}};
    for (const auto& [text, index] : indices) EXPECT_EQ(parsePaletteIndex(text, 14), index) << text;
}

TEST(CommandLine, OnlyOptionsNeitherQuelltonNorQtTakesAreReported) {
    const struct {
        Words words;
        std::vector<std::string> ignored;
    } cases[] = {
        {{"--frobnicate", "--autostart", "-x", "--frobnicate"}, {"--frobnicate", "-x", "--frobnicate"}},
        {{"datei", "-"}, {}},  // plain words and a lone dash are no options
        // Qt's options and their values, one dash or two, joined where Qt allows it.
        {{"-platform", "xcb", "-display", ":1", "-name", "nix", "-style", "-fusion"}, {}},
        {{"--platform", "xcb", "-style=fusion", "--stylesheet=a.qss", "-reverse", "-nograb"}, {}},
        {{"-qwindowtitle", "-titel-", "-geometry", "10x10", "-icon", "a.png", "-title", "t"}, {}},
        {{"-qmljsdebugger=port:1234", "-plugin", "evdevmouse", "-session", "s"}, {}},
        // A value option at the end takes nothing more; a flag never takes the next argument.
        {{"-platform"}, {}},
        {{"-reverse", "-y"}, {"-y"}},
        // Only the three joined forms exist, and names match whole.
        {{"-platform=xcb", "-styles", "---platform", "xcb"}, {"-platform=xcb", "-styles", "---platform"}},
        // Our modes' operands, negative numbers among them, even of a still that starts the application,
        // are no options; a word after them that is no palette index is.
        {{"--still", "nope", "-8", "-6", "-1", "-o.png", "-3"}, {}},
        {{"--still", "nope", "8", "6", "1", "o.png", "-z"}, {"-z"}},
        {{"--still", "halo", "8", "-q"}, {}},
        {{"--snapshots", "-out", "-2.5"}, {}},
        {{"--snapshots", "out", "-w"}, {"-w"}},
        {{"--icon", "-x.png"}, {}},
    };
    for (const auto& [words, ignored] : cases)
        EXPECT_EQ(ignoredOptions(withProgram(words)), ignored) << testing::PrintToString(words);
}

TEST(CommandLine, TheHelpNamesEveryModeWithItsOperandsWithinEightyColumns) {
    const std::string usage = CommandLineHelp::usage();
    for (const char* line : {"--snapshots ORDNER [ZEIT]", "--selftest", "--still KENNUNG BREITE HÖHE ZEIT DATEI [FARBWELT]",
                             "--bench", "--icon DATEI", "--autostart", "--help", "--version", "aller 97 Darstellungen",
                             "FARBWELT 0 bis 13 "})
        EXPECT_NE(usage.find(line), std::string::npos) << line;
    EXPECT_EQ(usage.back(), '\n');
    // Count characters, not the bytes of UTF-8.
    std::size_t column = 0;
    for (char c : usage) {
        if (c == '\n') {
            column = 0;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            EXPECT_LE(++column, 80u) << usage;
        }
    }
}
