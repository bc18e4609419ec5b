"""A private PulseAudio daemon for tests, the Python twin of PulseTestServer.

    with PulseServer() as pulse:
        session.env.update(pulse.env)          # programs started with this env use it
        tone = pulse.tone("tone.wav", seconds=20, frequencies=(80, 1000, 5000))
        pulse.play(tone)                       # into the default null sink "one"
        pulse.stop_playing()

It has two null sinks, "one" (the default) and "two", and listens only on a socket in its own
temporary folder, so neither the user's server nor the user's files are touched.
"""

import os
import shutil
import signal
import subprocess
import tempfile
import time

from private_service import PrivateService


class PulseServer(PrivateService):
    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="quellton-pulse-")
        self.env = {}
        self._daemon = None
        self._players = []

    def _start(self):
        for sub in ("home", "runtime"):
            os.makedirs(os.path.join(self.folder, sub))
        socket = os.path.join(self.folder, "native")
        self.env = {"PULSE_SERVER": f"unix:{socket}", "PULSE_RUNTIME_PATH": os.path.join(self.folder, "runtime")}
        env = dict(os.environ, HOME=os.path.join(self.folder, "home"),
                   XDG_RUNTIME_DIR=os.path.join(self.folder, "runtime"), **self.env)
        env.pop("DISPLAY", None)
        self._env = env
        # -n skips the user's default.pa; as root it only warns, since --system is not given.
        self._daemon = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm", "--use-pid-file=no",
             "--system=false", "--log-target=stderr", "--log-level=error",
             "-L", "module-null-sink sink_name=one", "-L", "module-null-sink sink_name=two",
             "-L", f"module-native-protocol-unix auth-anonymous=1 socket={socket}"],
            env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        deadline = time.monotonic() + 15
        while not self.pactl("info"):
            if self._daemon.poll() is not None or time.monotonic() > deadline:
                raise RuntimeError("the private PulseAudio did not start")
            time.sleep(0.05)
        if not self.pactl("set-default-sink", "one"):
            raise RuntimeError("the private PulseAudio has no sink 'one'")

    def pactl(self, *args):
        return subprocess.run(["pactl", *args], env=self._env, capture_output=True).returncode == 0

    def tone(self, name, seconds, frequencies):
        """A WAV file in the server's folder: the sines mixed, each as loud as the others."""
        path = os.path.join(self.folder, name)
        sines = [word for f in frequencies for word in ("sine", str(f))]
        subprocess.run(["sox", "-n", "-r", "48000", "-c", str(len(frequencies)), path, "synth", str(seconds), *sines,
                        "remix", "-", "tremolo", "2", "90", "gain", "-n", "-3"], check=True, capture_output=True)
        return path

    def play(self, path, sink="one"):
        # The default latency delivers in bursts of two seconds.
        self._players.append(subprocess.Popen(["paplay", "--latency-msec=20", "-d", sink, path], env=self._env,
                                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))

    def stop_playing(self):
        for player in self._players:
            _stop(player)
        self._players.clear()

    def close(self):
        self.stop_playing()
        if self._daemon is not None:
            _stop(self._daemon)
            self._daemon = None
        shutil.rmtree(self.folder, ignore_errors=True)


def _stop(process):
    if process.poll() is not None:
        return
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(timeout=10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait(timeout=5)
