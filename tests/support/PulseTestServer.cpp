#include "PulseTestServer.h"

namespace quellton::test {

PulseTestServer::PulseTestServer() : SoundTestServer("quellton-pulse") { begin(); }

PulseTestServer::~PulseTestServer() { kill(); }

bool PulseTestServer::launch() {
    // -n skips the user's default.pa; as root it only warns, since --system is not given.
    const pid_t daemon = spawnDaemon({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm",
                                      "--use-pid-file=no", "--system=false", "--log-target=stderr",
                                      "--log-level=error", "-L",
                                      "module-native-protocol-unix auth-anonymous=1 socket=" + dir() +
                                          "/runtime/pulse/native"},
                                     "pulseaudio");
    if (daemon <= 0) return false;
    daemons_.push_back(daemon);
    return waitForServer();
}

}  // namespace quellton::test
