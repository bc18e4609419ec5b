#include "QuelltonProcess.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "PulseTestServer.h"
#include "SessionTestSupport.h"

namespace quellton::test {

namespace {

std::string shellQuoted(const std::string& text) {
    std::string out = "'";
    for (char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

}  // namespace

QuelltonProcess::QuelltonProcess(const std::vector<std::string>& arguments) {
    static int count = 0;
    errorFile = (std::filesystem::temp_directory_path() /
                 ("quellton-stderr-" + std::to_string(getpid()) + "-" + std::to_string(++count)))
                    .string();
    // exec keeps the shell's process id, so pid() is the program's.
    std::string command = "exec " + shellQuoted(QUELLTON_BINARY);
    for (const std::string& argument : arguments) command += " " + shellQuoted(argument);
    command += " 2>" + shellQuoted(errorFile);
    pid_ = spawn({"sh", "-c", command});
}

QuelltonProcess::~QuelltonProcess() {
    if (pid_ > 0 && !status) {
        ::kill(pid_, SIGTERM);
        if (!waitExit(std::chrono::seconds(20))) {
            ::kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    std::error_code ignored;
    std::filesystem::remove(errorFile, ignored);
}

std::optional<int> QuelltonProcess::waitExit(std::chrono::seconds limit) {
    if (status || pid_ <= 0) return status;
    waitUntil(
        [this] {
            int raw = 0;
            if (waitpid(pid_, &raw, WNOHANG) != pid_) return false;
            status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
            return true;
        },
        int(std::chrono::milliseconds(limit).count()));
    return status;
}

std::string QuelltonProcess::errors() const {
    std::ifstream file(errorFile);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace quellton::test
