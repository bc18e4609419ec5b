#include "DisplayLoss.h"

#include <X11/Xlib.h>
#include <unistd.h>

#include <string_view>

namespace quellton {

namespace {

int displayLost(Display*) {
    // Only async-signal-safe calls: other threads may hold any lock now.
    constexpr std::string_view line = "Quellton: Die Verbindung zum X-Server ist abgebrochen; Quellton endet.\n";
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
    ::_exit(1);
}

}  // namespace

void endProcessOnDisplayLoss() { XSetIOErrorHandler(displayLost); }

}  // namespace quellton
