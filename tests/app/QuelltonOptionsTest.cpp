// The built program's answers to --help and --version, and its note on an option it leaves aside.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "Application.h"
#include "CommandLineHelp.h"

namespace {

const std::string program = std::string("'") + QUELLTON_BINARY + "'";

std::string output(const std::string& command) {
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    std::array<char, 4096> buffer{};
    while (const std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) text.append(buffer.data(), n);
    return text;
}

}  // namespace

TEST(QuelltonOptions, HelpAndVersionAnswerOnStandardOutputAndEnd) {
    for (const char* help : {" --help", " --autostart -h"})
        EXPECT_EQ(output(program + help + " 2>/dev/null; echo status $?"),
                  quellton::CommandLineHelp::usage() + "status 0\n");
    EXPECT_EQ(output(program + " --version 2>/dev/null; echo status $?"), "Quellton " QUELLTON_VERSION "\nstatus 0\n");
    // The working modes come first.
    EXPECT_EQ(output(program + " --help --selftest --version; echo status $?"),
              "Selbsttest bestanden (97 Darstellungen)\nstatus 0\n");
}

TEST(QuelltonOptions, AnUnknownOptionIsNamedAndTheApplicationStartsAnyway) {
    // Without a display the start ends with its own message, after the note on the option.
    EXPECT_EQ(output("env -u DISPLAY -u WAYLAND_DISPLAY " + program +
                     " --frobnicate -platform xcb -style=fusion -x 2>&1; echo status $?"),
              quellton::CommandLineHelp::ignoredOptionLine("--frobnicate") + "\n" +
                  quellton::CommandLineHelp::ignoredOptionLine("-x") + "\n" + quellton::Application::noDisplayMessage +
                  "\nstatus 1\n");
}
