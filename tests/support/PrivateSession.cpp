#include "PrivateSession.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace quellton::test {

PrivateSession::PrivateSession(const std::string& screen) : service_({"x11", "--screen", screen}) {
    if (const char* display = std::getenv("DISPLAY"); ready() && display) display_ = display;
}

int run(const std::string& command) {
    const int status = std::system(command.c_str());
    return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string output(const std::string& command) {
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    if (!pipe) return {};
    std::string text;
    std::array<char, 4096> buffer{};
    while (const std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) text.append(buffer.data(), n);
    return text;
}

}  // namespace quellton::test
