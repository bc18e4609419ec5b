#pragma once

#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "PulseTestServer.h"
#include "SessionTestSupport.h"

namespace quellton::test {

// The built program, started as a person starts it, its standard error kept in a file.
// A process still running at destruction is ended with SIGTERM.
class QuelltonProcess {
public:
    explicit QuelltonProcess(const std::vector<std::string>& arguments = {}) {
        static int count = 0;
        errorFile = (std::filesystem::temp_directory_path() /
                     ("quellton-stderr-" + std::to_string(getpid()) + "-" + std::to_string(++count)))
                        .string();
        // exec keeps the shell's process id, so pid() is the program's.
        std::string command = "exec " + quoted(QUELLTON_BINARY);
        for (const std::string& argument : arguments) command += " " + quoted(argument);
        pid_ = spawn({"sh", "-c", command + " 2>" + quoted(errorFile)});
    }
    ~QuelltonProcess() {
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
    QuelltonProcess(const QuelltonProcess&) = delete;
    QuelltonProcess& operator=(const QuelltonProcess&) = delete;

    pid_t pid() const { return pid_; }

    // The exit status (128 + signal when killed), or nothing when it did not end in time.
    // Runs the test's event loop while waiting, so the program's calls to the test get answers.
    std::optional<int> waitExit(std::chrono::seconds limit = std::chrono::seconds(30)) {
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

    // What the program wrote to standard error so far.
    std::string errors() const {
        std::ifstream file(errorFile);
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

private:
    static std::string quoted(const std::string& text) {
        std::string out = "'";
        for (char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
        return out + "'";
    }

    pid_t pid_ = -1;
    std::optional<int> status;
    std::string errorFile;
};

}  // namespace quellton::test
