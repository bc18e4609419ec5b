"""A private sound server for tests: PulseAudio, or PipeWire with pipewire-pulse and WirePlumber.

    with PulseServer() as pulse:               # or PipeWireServer()
        session.env.update(pulse.env)          # programs started with this env use it
        tone = pulse.tone("tone.wav", seconds=20, frequencies=(80, 1000, 5000))
        pulse.play(tone)                       # into the default null sink "one"
        pulse.stop_playing()

It has two null sinks, "one" (the default) and "two", and listens only on a socket in its own
temporary folder, so neither the user's server nor the user's files are touched. Each flavour runs
the real daemons.

    .env                    what a client needs to reach the server (PULSE_SERVER, ...)
    .exports                what a test process takes over to use nothing but this server: .env, HOME
                            and the runtime folder, and None for each variable to remove (DISPLAY)
    .folder                 its temporary folder; the daemons' logs are the *.log files in it
    .kill()                 ends the daemons, as a crash or a stop of the service would
    .restart()              starts them again on the same socket with the same two sinks
    .set_default_sink(name) through the server's own tool (pactl, or wpctl for PipeWire), once it reports it
    .remove_sink(name)      unloads that null sink, as unplugging a device does
Each raises ServiceError when the server does not do it.
"""

import glob
import os
import re
import shutil
import subprocess
import tempfile

from private_service import PrivateService, ServiceError, applied, poll_until, start_daemon, stop


class SoundServer(PrivateService):
    name = prefix = None

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix=self.prefix)
        self.env = {}
        self.exports = {}
        self._tools_env = {}
        self._daemons = []
        self._helpers = []  # outlive restarts of the daemons
        self._players = []

    def _path(self, *parts):
        return os.path.join(self.folder, *parts)

    def _start(self):
        for sub in ("home", "runtime"):
            os.makedirs(self._path(sub))
        os.chmod(self._path("runtime"), 0o700)
        pulse = self._path("runtime", "pulse")
        self.socket = os.path.join(pulse, "native")
        self.env.update(PULSE_SERVER=f"unix:{self.socket}", PULSE_RUNTIME_PATH=pulse)
        self.exports.update(self.env, HOME=self._path("home"), XDG_RUNTIME_DIR=self._path("runtime"), DISPLAY=None)
        self._tools_env = applied(os.environ, self.exports)
        self._prepare()
        self._launch_with_sinks()

    def _prepare(self):
        pass

    def _launch(self):
        raise NotImplementedError

    def _daemon_env(self):
        return {}

    def _launch_with_sinks(self):
        self._launch()
        if not (self.pactl("load-module", "module-null-sink", "sink_name=one") and
                self.pactl("load-module", "module-null-sink", "sink_name=two") and
                # PipeWire refuses a default until its session manager is up: ask again until it holds.
                poll_until(lambda: self.pactl("set-default-sink", "one") and self.default_sink() == "one", 10)):
            raise self._failure("did not take the sinks 'one' and 'two'")

    def _start_daemon(self, argv, log_name):
        env = applied(self._tools_env, dict(self._daemon_env(), WAYLAND_DISPLAY=None))
        process = start_daemon(argv, env, self._path(f"{log_name}.log"))
        self._daemons.append(process)
        return process

    def _await(self, condition, what, timeout=20):
        def answered():
            if any(daemon.poll() is not None for daemon in self._daemons):
                raise self._failure(f"ended before {what}")
            return condition()
        if not poll_until(answered, timeout):
            raise self._failure(f"gave no {what} within {timeout} s")

    def _failure(self, what):
        return ServiceError(f"the private {self.name} {what}\n{self.logs()}")

    def _await_server(self):
        self._await(lambda: self.pactl("info"), "answer on its pulse socket")

    def run(self, argv):
        return subprocess.run(argv, env=self._tools_env, capture_output=True, text=True, timeout=60)

    def pactl(self, *args):
        return self.run(["pactl", *args]).returncode == 0

    def default_sink(self):
        return self.run(["pactl", "get-default-sink"]).stdout.strip()

    def kill(self):
        # The last started (the pulse front end) goes first, as a service stop does.
        for daemon in reversed(self._daemons):
            stop(daemon)
        self._daemons.clear()

    def restart(self):
        self.kill()
        self._launch_with_sinks()

    def _ask_for_default(self, sink):
        return self.pactl("set-default-sink", sink)

    def set_default_sink(self, sink):
        if not self._ask_for_default(sink):
            raise ServiceError(f"no sink {sink!r} to make the default")
        if not poll_until(lambda: self.default_sink() == sink, 10):
            raise ServiceError(f"the default sink stayed {self.default_sink()!r}, not {sink!r}")

    def remove_sink(self, sink):
        for line in self.run(["pactl", "list", "short", "modules"]).stdout.splitlines():
            words = line.split()
            if "module-null-sink" in words and f"sink_name={sink}" in words:
                if self.pactl("unload-module", words[0]):
                    return
        raise ServiceError(f"no null sink {sink!r} to remove")

    def tone(self, name, seconds, frequencies):
        """A WAV file in the server's folder: the sines mixed, each as loud as the others."""
        path = self._path(name)
        sines = [word for f in frequencies for word in ("sine", str(f))]
        subprocess.run(["sox", "-n", "-r", "48000", "-c", str(len(frequencies)), path, "synth", str(seconds), *sines,
                        "remix", "-", "tremolo", "2", "90", "gain", "-n", "-3"], check=True, capture_output=True)
        return path

    def play(self, path, sink="one"):
        # The default latency delivers in bursts of two seconds.
        self._players.append(subprocess.Popen(["paplay", "--latency-msec=20", "-d", sink, path],
                                              env=self._tools_env, stdin=subprocess.DEVNULL,
                                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                              start_new_session=True))

    def stop_playing(self):
        for player in self._players:
            stop(player)
        self._players.clear()

    def logs(self):
        """The end of each daemon's log, for failure messages."""
        text = ""
        for log in sorted(glob.glob(self._path("*.log"))):
            with open(log, errors="replace") as lines:
                text += f"==> {os.path.basename(log)} <==\n" + "".join(lines.readlines()[-20:])
        return text

    def close(self):
        self.stop_playing()
        self.kill()
        for helper in self._helpers:
            stop(helper)
        shutil.rmtree(self.folder, ignore_errors=True)


class PulseServer(SoundServer):
    """One pulseaudio daemon without the user's configuration."""
    name, prefix = "PulseAudio", "quellton-pulse-"

    def _launch(self):
        # -n skips the user's default.pa; as root it only warns, since --system is not given.
        self._start_daemon(["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm",
                            "--use-pid-file=no", "--system=false", "--log-target=stderr", "--log-level=error",
                            "-L", f"module-native-protocol-unix auth-anonymous=1 socket={self.socket}"],
                           "pulseaudio")
        self._await_server()


# WirePlumber reads these after its own defaults; a device monitor off opens no device.
WIREPLUMBER_OVERRIDES = {
    "main.lua.d": "alsa_monitor.enabled = false\nv4l2_monitor.enabled = false\nlibcamera_monitor.enabled = false\n",
    "bluetooth.lua.d": "bluez_monitor.enabled = false\n",
}


class PipeWireServer(SoundServer):
    """pipewire, pipewire-pulse and WirePlumber with a session bus of their own. WirePlumber is told
    to leave sound cards, cameras and Bluetooth alone, so only the null sinks exist and the
    machine's devices are never opened."""
    name, prefix = "PipeWire", "quellton-pipewire-"

    def __init__(self):
        super().__init__()
        # wpctl and every other PipeWire client of the test reach only this server.
        self.env["PIPEWIRE_RUNTIME_DIR"] = self._path("runtime")
        self.exports["PIPEWIRE_REMOTE"] = None

    def _prepare(self):
        for folder, text in WIREPLUMBER_OVERRIDES.items():
            os.makedirs(self._path("config", "wireplumber", folder))
            with open(self._path("config", "wireplumber", folder, "51-quellton-test.lua"), "w") as override:
                override.write(text)
        # WirePlumber does not run without a session bus.
        bus = self._path("bus")
        self._helpers.append(start_daemon(["dbus-daemon", "--session", "--nofork", "--nopidfile",
                                           f"--address=unix:path={bus}"], self._tools_env, self._path("dbus.log")))
        if not poll_until(lambda: os.path.exists(bus), 10):
            raise ServiceError("the PipeWire session's bus did not start")

    def _daemon_env(self):
        return {"XDG_CONFIG_HOME": self._path("config"), "XDG_STATE_HOME": self._path("state"),
                "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self._path('bus')}",
                # Keeps WirePlumber's GLib from starting gvfs on the private bus.
                "GIO_USE_VFS": "local"}

    def _launch(self):
        # The session manager and the pulse front end give up at once when the core is not there yet.
        self._start_daemon(["pipewire"], "pipewire")
        core = self._path("runtime", "pipewire-0")
        self._await(lambda: os.path.exists(core) and self.run(["pw-cli", "info", "0"]).returncode == 0,
                    "core on its socket")
        self._start_daemon(["wireplumber"], "wireplumber")
        self._start_daemon(["pipewire-pulse"], "pipewire-pulse")
        self._await_server()

    def node_id(self, name):
        """WirePlumber's id of a node, read from `wpctl status`; None when absent."""
        match = re.search(rf"(\d+)\. {re.escape(name)}\b", self.run(["wpctl", "status"]).stdout)
        return match and match.group(1)

    def _ask_for_default(self, sink):
        node = self.node_id(sink)
        return node is not None and self.run(["wpctl", "set-default", node]).returncode == 0
