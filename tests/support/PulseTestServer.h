#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace quellton::test {

// A private PulseAudio daemon with two null sinks ("one", the default, and "two"), reachable
// only through a socket in a temporary folder. The test process points PULSE_SERVER, HOME
// and the runtime folders there, so neither the user's server nor the user's files are used.
class PulseTestServer {
public:
    PulseTestServer();
    ~PulseTestServer();
    PulseTestServer(const PulseTestServer&) = delete;
    PulseTestServer& operator=(const PulseTestServer&) = delete;

    bool ready() const { return ready_; }
    const std::string& dir() const { return dir_; }
    // Runs pactl with these arguments against the private server; true on exit status 0.
    bool pactl(const std::string& arguments) const;
    // Starts paplay of a file on a sink with low latency; stopped by stopPlaying or the destructor.
    void play(const std::string& file, const std::string& sink);
    void stopPlaying();
    void kill();

private:
    std::string dir_;
    pid_t daemon_ = -1;
    std::vector<pid_t> players_;
    bool ready_ = false;
};

// Runs a shell command; true on exit status 0.
bool shell(const std::string& command);
pid_t spawn(const std::vector<std::string>& argv);
void terminate(pid_t pid);

}  // namespace quellton::test
