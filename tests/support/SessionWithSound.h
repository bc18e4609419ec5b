#pragma once

#include "PrivateSession.h"
#include "PulseTestServer.h"

namespace quellton::test {

// A private graphical session with a sound server of its own. The sound server starts first:
// it clears DISPLAY, which the session then sets.
struct SessionWithSound {
    PulseTestServer pulse;
    PrivateSession session;

    bool ready() const { return pulse.ready() && session.ready(); }
};

}  // namespace quellton::test
