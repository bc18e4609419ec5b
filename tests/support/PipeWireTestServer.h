#pragma once

#include "SoundTestServer.h"

namespace quellton::test {

// The PipeWire flavour: pipewire, pipewire-pulse and WirePlumber with a session bus of their
// own. WirePlumber is told to leave sound cards, cameras and Bluetooth alone, so only the null
// sinks exist and the machine's devices are never opened.
class PipeWireTestServer : public SoundTestServer {
public:
    PipeWireTestServer();
    ~PipeWireTestServer() override;

    SoundServerKind kind() const override { return SoundServerKind::pipeWire; }
    bool switchDefaultSink(const std::string& sink) override;
    // WirePlumber's id of a node, read from `wpctl status`; -1 when absent.
    int nodeId(const std::string& name) const;

protected:
    bool launch() override;
    std::map<std::string, std::optional<std::string>> daemonEnvironment() const override;

private:
    pid_t bus_ = -1;
};

}  // namespace quellton::test
