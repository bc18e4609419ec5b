#pragma once

#include <string>

namespace quellton::CommandLineHelp {

// The German usage text of every mode and option, newline-terminated.
std::string usage();
// "Quellton" and the version the program was built as.
std::string version();
// The one line that names an option the application start leaves aside.
std::string ignoredOptionLine(const std::string& option);

}  // namespace quellton::CommandLineHelp
