#pragma once

#include "SoundTestServer.h"

namespace quellton::test {

// The PipeWire flavour: pipewire, pipewire-pulse and WirePlumber with a session bus of their
// own. WirePlumber is told to leave sound cards, cameras and Bluetooth alone, so only the null
// sinks exist and the machine's devices are never opened.
class PipeWireTestServer : public SoundTestServer {
public:
    PipeWireTestServer() : SoundTestServer(SoundServerKind::pipeWire) {}
};

}  // namespace quellton::test
