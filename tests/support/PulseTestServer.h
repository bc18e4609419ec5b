#pragma once

#include "SoundTestServer.h"

namespace quellton::test {

// The PulseAudio flavour: one pulseaudio daemon without the user's configuration.
class PulseTestServer : public SoundTestServer {
public:
    PulseTestServer() : SoundTestServer(SoundServerKind::pulseAudio) {}
};

}  // namespace quellton::test
