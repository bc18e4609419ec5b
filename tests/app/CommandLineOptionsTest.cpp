#include <gtest/gtest.h>

#include "CommandLine.h"
#include "CommandLineHelp.h"

using namespace quellton;

namespace {

std::vector<std::string> withProgram(std::initializer_list<const char*> words) {
    std::vector<std::string> args{"quellton"};
    args.insert(args.end(), words.begin(), words.end());
    return args;
}

CommandLineMode recognize(std::initializer_list<const char*> words) { return recognizeMode(withProgram(words)); }

std::vector<std::string> ignored(std::initializer_list<const char*> words) { return ignoredOptions(withProgram(words)); }

}  // namespace

TEST(CommandLineOptions, HelpAndVersionComeAfterEveryWorkingMode) {
    EXPECT_TRUE(std::holds_alternative<SnapshotsMode>(recognize({"--snapshots", "out", "--help"})));
    EXPECT_TRUE(std::holds_alternative<SelftestMode>(recognize({"--version", "--selftest"})));
    EXPECT_TRUE(std::holds_alternative<StillMode>(recognize({"--help", "--still", "halo", "8", "8", "1", "o.png"})));
    EXPECT_TRUE(std::holds_alternative<BenchMode>(recognize({"-h", "--bench"})));
    EXPECT_TRUE(std::holds_alternative<IconMode>(recognize({"--help", "--icon", "x.png"})));
    // An operand is no flag: this exports into a folder named --help.
    EXPECT_EQ(std::get<SnapshotsMode>(recognize({"--snapshots", "--help"})).folder, "--help");

    EXPECT_TRUE(std::holds_alternative<HelpMode>(recognize({"--help"})));
    EXPECT_TRUE(std::holds_alternative<HelpMode>(recognize({"--autostart", "-h"})));
    EXPECT_TRUE(std::holds_alternative<VersionMode>(recognize({"--version"})));
    EXPECT_TRUE(std::holds_alternative<HelpMode>(recognize({"--version", "--help"})));
    // A malformed mode flag falls through to help, as it falls through to the application start.
    EXPECT_TRUE(std::holds_alternative<HelpMode>(recognize({"--still", "nope", "8", "8", "1", "o.png", "--help"})));
    EXPECT_TRUE(std::holds_alternative<NoMode>(recognize({"--HELP", "-help", "--version=1", "-v"})));
}

TEST(CommandLineOptions, OnlyOptionsNobodyTakesAreIgnored) {
    EXPECT_TRUE(ignored({}).empty());
    EXPECT_TRUE(ignored({"--autostart"}).empty());
    EXPECT_EQ(ignored({"--frobnicate", "--autostart", "-x", "--frobnicate"}),
              (std::vector<std::string>{"--frobnicate", "-x", "--frobnicate"}));
    // Plain words and a lone dash are no options.
    EXPECT_TRUE(ignored({"datei", "-"}).empty());
}

TEST(CommandLineOptions, QtsOptionsAndTheirValuesAreQts) {
    EXPECT_TRUE(ignored({"-platform", "xcb", "-display", ":1", "-name", "nix", "-style", "-fusion"}).empty());
    EXPECT_TRUE(ignored({"--platform", "xcb", "-style=fusion", "--stylesheet=a.qss", "-reverse", "-nograb"}).empty());
    EXPECT_TRUE(ignored({"-qwindowtitle", "-titel-", "-geometry", "10x10", "-icon", "a.png", "-title", "t"}).empty());
    EXPECT_TRUE(ignored({"-qmljsdebugger=port:1234", "-plugin", "evdevmouse", "-session", "s"}).empty());
    // A value option at the end takes nothing more; a flag never takes the next argument.
    EXPECT_TRUE(ignored({"-platform"}).empty());
    EXPECT_EQ(ignored({"-reverse", "-y"}), std::vector<std::string>{"-y"});
    // Only the three joined forms exist, and names match whole.
    EXPECT_EQ(ignored({"-platform=xcb", "-styles", "---platform", "xcb"}),
              (std::vector<std::string>{"-platform=xcb", "-styles", "---platform"}));
}

TEST(CommandLineOptions, OperandsOfOurModesAreNoOptions) {
    // A still with an unknown id starts the application; its operands, negative numbers among
    // them, are not reported, while a word after them that is no palette index is.
    EXPECT_TRUE(ignored({"--still", "nope", "-8", "-6", "-1", "-o.png", "-3"}).empty());
    EXPECT_EQ(ignored({"--still", "nope", "8", "6", "1", "o.png", "-z"}), std::vector<std::string>{"-z"});
    EXPECT_EQ(ignored({"--still", "halo", "8", "-q"}), std::vector<std::string>{});
    EXPECT_TRUE(ignored({"--snapshots", "-out", "-2.5"}).empty());
    EXPECT_EQ(ignored({"--snapshots", "out", "-w"}), std::vector<std::string>{"-w"});
    EXPECT_TRUE(ignored({"--icon", "-x.png"}).empty());
}

TEST(CommandLineOptions, TheHelpNamesEveryModeWithItsOperands) {
    const std::string usage = CommandLineHelp::usage();
    for (const char* line : {"--snapshots ORDNER [ZEIT]", "--selftest", "--still KENNUNG BREITE HÖHE ZEIT DATEI [FARBWELT]",
                             "--bench", "--icon DATEI", "--autostart", "--help", "--version"})
        EXPECT_NE(usage.find(line), std::string::npos) << line;
    EXPECT_NE(usage.find("aller 97 Darstellungen"), std::string::npos);
    EXPECT_NE(usage.find("FARBWELT 0 bis 13 "), std::string::npos);
    EXPECT_EQ(usage.back(), '\n');
    // Fits a terminal of 80 columns: count characters, not the bytes of UTF-8.
    std::size_t column = 0;
    for (char c : usage) {
        if (c == '\n') {
            column = 0;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            EXPECT_LE(++column, 80u) << usage;
        }
    }
}
