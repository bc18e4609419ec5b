#pragma once

#include <string>

namespace quellton {

// Writes one line to the system log (syslog(3), which reaches the journal).
void systemLog(const std::string& line);

}  // namespace quellton
