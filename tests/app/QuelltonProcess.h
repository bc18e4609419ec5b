#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quellton::test {

// The built program, started as a person starts it, its standard error kept in a file.
// A process still running at destruction is ended with SIGTERM.
class QuelltonProcess {
public:
    explicit QuelltonProcess(const std::vector<std::string>& arguments = {});
    ~QuelltonProcess();
    QuelltonProcess(const QuelltonProcess&) = delete;
    QuelltonProcess& operator=(const QuelltonProcess&) = delete;

    pid_t pid() const { return pid_; }
    // The exit status (128 + signal when killed), or nothing when it did not end in time.
    // Runs the test's event loop while waiting, so the program's calls to the test get answers.
    std::optional<int> waitExit(std::chrono::seconds limit = std::chrono::seconds(30));
    // What the program wrote to standard error so far.
    std::string errors() const;

private:
    pid_t pid_ = -1;
    std::optional<int> status;
    std::string errorFile;
};

}  // namespace quellton::test
