#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "SessionService.h"

namespace quellton::test {

enum class SoundServerKind { pulseAudio, pipeWire };
// "PulseAudio" or "PipeWire", usable in test names.
std::string kindName(SoundServerKind kind);
// How test frameworks print a parameter of this type.
void PrintTo(SoundServerKind kind, std::ostream* out);

// A private sound server for tests with two null sinks, "one" (the default) and "two",
// reachable only through a socket in a temporary folder. The test process points PULSE_SERVER,
// HOME and the runtime folders there, so neither the user's server nor the user's files are used.
// Each flavour runs the real daemons: PulseAudio, or PipeWire with pipewire-pulse and WirePlumber.
class SoundTestServer {
public:
    virtual ~SoundTestServer();

    SoundServerKind kind() const { return kind_; }
    bool ready() const { return service_.ready(); }
    const std::string& dir() const { return service_.folder(); }

    // Runs pactl with these arguments against the private server; true on exit status 0.
    bool pactl(const std::string& arguments) const;
    // What pactl printed on standard output.
    std::string pactlOutput(const std::string& arguments) const;
    std::string defaultSink() const;
    // Streams recording from the server right now (`pactl list source-outputs`).
    int sourceOutputs() const;
    // Makes `sink` the default through the server's own tool: pactl for PulseAudio, wpctl for
    // PipeWire. True once the server reports it.
    bool switchDefaultSink(const std::string& sink) { return service_.request("default-sink " + sink); }

    // Unloads the null sink of that name, as unplugging a device does.
    bool removeSink(const std::string& sink) { return service_.request("remove-sink " + sink); }

    // Starts paplay of a file on a sink with low latency; stopped by stopPlaying or the destructor.
    void play(const std::string& file, const std::string& sink);
    void stopPlaying();

    // What the daemons wrote, for failure messages.
    std::string logs() const;

    // Ends every process of the server, as a crash or a restart of the service would.
    void kill() { service_.request("kill"); }
    // Starts it again on the same socket with the same two sinks; true when ready.
    bool restart() { return service_.request("restart"); }

protected:
    explicit SoundTestServer(SoundServerKind kind);

private:
    SoundServerKind kind_;
    SessionService service_;
    std::vector<pid_t> players_;
};

// The flavour of that kind, started.
std::unique_ptr<SoundTestServer> makeSoundTestServer(SoundServerKind kind);

// Polls the condition every 20 ms until it holds or the time is up; its last value.
bool pollUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

// Runs a shell command; true on exit status 0.
bool shell(const std::string& command);
pid_t spawn(const std::vector<std::string>& argv);
// Like spawn, with variables set (or removed, for nullopt) and standard output and error
// appended to `log` when it is not empty.
pid_t spawnWith(const std::vector<std::string>& argv,
                const std::map<std::string, std::optional<std::string>>& environment,
                const std::string& log = {});
void terminate(pid_t pid);

}  // namespace quellton::test
