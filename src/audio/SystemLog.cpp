#include "SystemLog.h"

#include <syslog.h>

namespace quellton {

void systemLog(const std::string& line) { syslog(LOG_ERR, "%s", line.c_str()); }

}  // namespace quellton
