#pragma once

#include "SoundTestServer.h"

namespace quellton::test {

// The PulseAudio flavour: one pulseaudio daemon without the user's configuration.
class PulseTestServer : public SoundTestServer {
public:
    PulseTestServer();
    ~PulseTestServer() override;

    SoundServerKind kind() const override { return SoundServerKind::pulseAudio; }

protected:
    bool launch() override;
};

}  // namespace quellton::test
