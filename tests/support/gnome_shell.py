"""A real GNOME Shell for tests: headless, on Wayland, as an unprivileged user (the shell refuses
root), with a private system bus (without one it dies looking for logind) and a private session bus.

    with GnomeShell(extensions={"ding@rastersoft.com": None, UUID: build_folder}) as shell:
        shell.eval("Main.overview.visible")          # JSON-decoded result; the shell runs in unsafe mode
        shell.screenshot("a.png")                    # org.gnome.Shell.Screenshot, as org.gnome.Screenshot
        shell.press(100, 200, button=1)              # a click of a Clutter virtual pointer
        shell.call(...)                              # gdbus call on the session bus, as the shell's user
        shell.run([...]) / shell.env                 # a command as the shell's user, as its client

`home_files` maps paths under HOME to their text. Extensions given a folder are copied into ~/.local/share/gnome-shell/extensions; None means the
system's. All of them are enabled before the shell starts, and a test-only extension puts the
shell into unsafe mode so that Eval works. Everything lives in one temporary folder, owned by the
shell's user, and is removed on leaving.
"""

import json
import os
import pwd
import shutil
import subprocess
import tempfile
import textwrap
import time

from private_service import PrivateService, ServiceError, poll_until, start_daemon, stop

USER = "nobody"
UNSAFE_UUID = "unsafe-mode@tests.quellton.github.io"

SYSTEM_BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path={path}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/><allow own="*"/><allow send_destination="*"/><allow receive_sender="*"/>
  </policy>
</busconfig>
"""

UNSAFE_EXTENSION = """\
function init() {
    return {
        enable() { global.context.unsafe_mode = true; },
        disable() { global.context.unsafe_mode = false; },
    };
}
"""

# Takes a screenshot as the owner of org.gnome.Screenshot, whom the shell lets do that.
SCREENSHOT = """\
import sys
from gi.repository import Gio, GLib
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
              GLib.Variant("(su)", ("org.gnome.Screenshot", 4)), None, 0, -1)
reply = bus.call_sync("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot",
                      "Screenshot", GLib.Variant("(bbs)", (False, False, sys.argv[1])), None, 0, 20000)
sys.exit(0 if reply.unpack()[0] else 1)
"""


class ShellError(ServiceError):
    pass


class GnomeShell(PrivateService):
    def __init__(self, extensions, size=(1280, 720), desktop_files=("Notizen.txt", "Bericht.txt", "Bilder"),
                 home_files=None):
        self.extensions = dict(extensions)
        self.home_files = dict(home_files or {})
        self.size = size
        self.desktop_files = desktop_files
        self.folder = None
        self._system_bus = None
        self._session_bus = None
        self._shell = None

    # -- what tests use -------------------------------------------------------------------------

    @property
    def home(self):
        return os.path.join(self.folder, "home")

    @property
    def log(self):
        with open(os.path.join(self.folder, "shell.log"), errors="replace") as f:
            return f.read()

    def run(self, argv, timeout=30, check=True):
        """Runs a command as the shell's user, in its session."""
        result = subprocess.run(["runuser", "-u", USER, "--", "env", *self._env_list(), *argv], capture_output=True,
                                text=True, timeout=timeout)
        if check and result.returncode != 0:
            raise ShellError(f"{argv[0]} failed: {result.stderr.strip()}")
        return result

    def call(self, destination, path, method, *arguments, timeout=30):
        return self.run(["gdbus", "call", "--session", "--dest", destination, "--object-path", path, "--method",
                         method, *arguments], timeout=timeout).stdout.strip()

    def eval(self, code):
        """Runs JavaScript in the shell; its result, JSON-decoded."""
        out = self.call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Eval", code)
        ok, _, value = out.strip("()").partition(", ")
        value = value.strip()
        if value.startswith("'") and value.endswith("'"):
            value = value[1:-1]
        if ok != "true":
            raise ShellError(f"Eval failed: {value}")
        return json.loads(value) if value else None

    def screenshot(self, path):
        with open(os.path.join(self.folder, "screenshot.py"), "w") as f:
            f.write(SCREENSHOT)
        target = os.path.join(self.folder, "shot.png")
        self.run(["python3", os.path.join(self.folder, "screenshot.py"), target])
        shutil.copy(target, path)
        return path

    def press(self, x, y, button=1, hold=0.15):
        """Moves a virtual pointer there and clicks a button, held for `hold` seconds (a person's click;
        0 for a menu, which a later release over it would choose from)."""
        self.eval(textwrap.dedent(f"""
            (() => {{
                const Clutter = imports.gi.Clutter;
                if (!global._testPointer)
                    global._testPointer = Clutter.get_default_backend().get_default_seat()
                        .create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE);
                const p = global._testPointer, now = global.get_current_time() * 1000;
                p.notify_absolute_motion(now, {x}, {y});
                p.notify_button(now + 1000, {button}, Clutter.ButtonState.PRESSED);
                imports.gi.GLib.timeout_add(imports.gi.GLib.PRIORITY_DEFAULT, {int(hold * 1000)}, () => {{
                    p.notify_button(global.get_current_time() * 1000, {button}, Clutter.ButtonState.RELEASED);
                    return false;
                }});
            }})()"""))
        time.sleep(0.3)

    def wait(self, predicate, timeout=30, message=""):
        value = poll_until(predicate, timeout, interval=0.25)
        if not value:
            raise ShellError(f"timed out: {message}\n--- shell log ---\n{self.log[-4000:]}")
        return value

    # -- starting and stopping ------------------------------------------------------------------

    def _env_list(self):
        return [f"{k}={v}" for k, v in self.env.items()]

    def _start(self):
        user = pwd.getpwnam(USER)
        self.folder = tempfile.mkdtemp(prefix="quellton-gnome-")
        os.chmod(self.folder, 0o755)
        runtime = os.path.join(self.folder, "runtime")
        for sub in ("home", "home/Desktop", "home/.local/share/gnome-shell/extensions", "runtime"):
            os.makedirs(os.path.join(self.folder, sub), exist_ok=True)
        for name in self.desktop_files:
            target = os.path.join(self.home, "Desktop", name)
            if "." in name:
                with open(target, "w") as f:
                    f.write("Quellton\n")
            else:
                os.makedirs(target, exist_ok=True)
        for name, text in self.home_files.items():
            os.makedirs(os.path.dirname(os.path.join(self.home, name)), exist_ok=True)
            with open(os.path.join(self.home, name), "w") as f:
                f.write(text)
        installed = os.path.join(self.home, ".local/share/gnome-shell/extensions")
        for uuid, source in self.extensions.items():
            if source:
                shutil.copytree(source, os.path.join(installed, uuid))
        os.makedirs(os.path.join(installed, UNSAFE_UUID))
        with open(os.path.join(installed, UNSAFE_UUID, "extension.js"), "w") as f:
            f.write(UNSAFE_EXTENSION)
        with open(os.path.join(installed, UNSAFE_UUID, "metadata.json"), "w") as f:
            json.dump({"uuid": UNSAFE_UUID, "name": "unsafe mode for tests", "description": "tests only",
                       "shell-version": ["43", "44"]}, f)
        for root, dirs, files in os.walk(self.folder):
            for name in dirs + files + ["."]:
                os.chown(os.path.join(root, name), user.pw_uid, user.pw_gid, follow_symlinks=False)
        os.chmod(runtime, 0o700)

        system_config = os.path.join(self.folder, "system-bus.conf")
        with open(system_config, "w") as f:
            f.write(SYSTEM_BUS_CONFIG.format(path=os.path.join(self.folder, "system_bus")))
        session_socket = os.path.join(self.folder, "session_bus")
        self.env = {
            "HOME": self.home, "XDG_RUNTIME_DIR": runtime, "XDG_CONFIG_HOME": os.path.join(self.home, ".config"),
            "XDG_DATA_HOME": os.path.join(self.home, ".local/share"), "XDG_CACHE_HOME": os.path.join(self.home, ".cache"),
            "XDG_CURRENT_DESKTOP": "GNOME", "XDG_SESSION_TYPE": "wayland", "LANG": "C.UTF-8",
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/system_bus",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={session_socket}",
            "PATH": "/usr/local/bin:/usr/bin:/bin", "MESA_SHADER_CACHE_DISABLE": "true",
            "NO_AT_BRIDGE": "1", "GSETTINGS_BACKEND": "dconf",
        }
        # Under the sanitizers the program the extension starts must see the suite's options and leak
        # suppressions too, or a library's known leak makes its end look like a crash.
        self.env.update({k: v for k, v in os.environ.items() if k in ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")})
        as_user = ["runuser", "-u", USER, "--", "env", "-i", *self._env_list()]
        self._system_bus = start_daemon([*as_user, "dbus-daemon", "--nofork", f"--config-file={system_config}"],
                                        os.environ, log=os.path.join(self.folder, "bus.log"))
        self._session_bus = start_daemon([*as_user, "dbus-daemon", "--nofork", "--session",
                                          f"--address=unix:path={session_socket}"], os.environ,
                                         log=os.path.join(self.folder, "bus.log"))
        if not poll_until(lambda: os.path.exists(session_socket) and os.path.exists(f"{self.folder}/system_bus"), 10):
            raise ShellError("the private buses did not start")
        enabled = [*self.extensions, UNSAFE_UUID]
        self.run(["gsettings", "set", "org.gnome.shell", "disable-user-extensions", "false"])
        self.run(["gsettings", "set", "org.gnome.shell", "enabled-extensions", json.dumps(enabled).replace('"', "'")])
        self.run(["gsettings", "set", "org.gnome.shell", "welcome-dialog-last-shown-version", "'999'"])
        width, height = self.size
        self._shell = start_daemon([*as_user, "gnome-shell", "--headless", "--wayland", "--no-x11",
                                    "--virtual-monitor", f"{width}x{height}"], os.environ,
                                   log=os.path.join(self.folder, "shell.log"), cwd=self.home)
        self.wait(self._ready, 90, "GNOME Shell did not start")
        # Programs the tests start are the shell's clients.
        sockets = [n for n in os.listdir(runtime) if n.startswith("wayland-") and not n.endswith(".lock")]
        self.env["WAYLAND_DISPLAY"] = sorted(sockets)[0]
        # The shell opens with the overview; the desktop is what the tests look at.
        self.eval("Main.overview.hide()")
        self.wait(lambda: self.eval("Main.overview.visible") is False, 20, "the overview stays")

    def _ready(self):
        if self._shell.poll() is not None:
            raise ShellError(f"GNOME Shell ended:\n{self.log[-4000:]}")
        try:
            return self.eval("Main.layoutManager._startingUp === false") is True
        except (ShellError, subprocess.TimeoutExpired):
            return False

    def close(self):
        for process in (self._shell, self._session_bus, self._system_bus):
            if process:
                stop(process)
        if self.folder and not os.environ.get("QUELLTON_KEEP_TEST_FOLDER"):
            shutil.rmtree(self.folder, ignore_errors=True)
