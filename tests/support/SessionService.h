#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace quellton::test {

// One of the tests' private services, run by session_service.py beside this file for as long as
// this object lives. Once it is ready, this process's environment points at it: the service
// names each variable to set or remove. It stops everything it started when this object goes,
// and also when this process ends without a word.
class SessionService {
public:
    explicit SessionService(const std::vector<std::string>& arguments);
    ~SessionService();
    SessionService(const SessionService&) = delete;
    SessionService& operator=(const SessionService&) = delete;

    bool ready() const { return ready_; }
    // Its temporary folder; empty when it did not start.
    const std::string& folder() const { return folder_; }
    // Sends one command line and waits for the answer; true on "ok". The service tells standard
    // error why it failed.
    bool request(const std::string& command);

private:
    bool readLine(std::string* line);

    pid_t pid_ = -1;
    int socket_ = -1;
    std::string pending_;
    std::string folder_;
    bool ready_ = false;
};

}  // namespace quellton::test
