"""Drive a program's windows as a person would, in a private desktop, for GUI tests.

A DesktopSession starts, and on leaving stops, everything in its own temporary folder:
Xvfb on a free display, a private D-Bus session bus, the accessibility bus (at-spi2-core's
bus launcher) on it, a window manager (openbox unless told otherwise), HOME and the XDG
folders, and GSETTINGS_BACKEND=keyfile so `gsettings` changes stay in the session. Programs
started with launch() see only that session and have Qt's accessibility switched on.

Controls are found through the accessibility tree by role and name, and are used with real
pointer events (xdotool) at the screen positions the tree reports, so a test sees what a
screen reader and a person see.

    from desktop_session import DesktopSession

    with DesktopSession(size=(1600, 1000)) as desktop:
        app = desktop.launch([binary], app_name="Quellton")
        frame = app.find(role="frame")
        desktop.click(app.find("Mein Mix", role="list item"))
        desktop.wait(lambda: frame.name == "Mein Mix — 12 Darstellungen")
        desktop.move(app.find("Halo als Hintergrund setzen", role="push button"))
        shot = desktop.screenshot(region=app.find("Vorschau").rect)

API
  XSession(size=(w, h), depth=24)   only Xvfb, the bus and the folders, for programs that drive themselves
    .exports                the variables a process takes over to live in the session (None: removed)
  DesktopSession(size=(w, h), window_manager="openbox")   an XSession, and:
    .env                    the session's environment (a dict)
    .folder                 its temporary folder (home/, config/, cache/, data/, state/ inside)
    .run(argv)              runs a command in the session, returns subprocess.CompletedProcess
    .launch(argv, app_name, stdin=False, timeout=60) -> App   (waits until it is on the bus)
    .click(target), .double_click(target), .move(target)      target: a Node, (x, y) or a Rect
    .key(keys)              xdotool key names, e.g. "Escape" or "alt+F4"
    .screenshot(path=None, region=None) -> Image   (ImageMagick `import` of the root window)
    .wait(predicate, timeout=30, message="") -> the predicate's first true value; fails the test otherwise
  App
    .process                the subprocess.Popen (stdin is a pipe when launch(stdin=True))
    .send(line)             writes one line to its standard input
    .find(name=None, role=None, within=None, timeout=20, exact=True) -> Node
    .find_all(name=None, role=None, within=None, exact=True) -> [Node]   (no waiting)
    .cpu_seconds(thread=None)   user + system time used so far, by the process or its threads of that name
  Node                      a live view of one accessible object
    .name, .role, .rect (screen pixels, None without a place), .center, .children, .states, .showing,
    .description (a tooltip, for Qt), .value (a slider's; None for objects without one)
  Rect(x, y, width, height) with .center and .contains(x, y)
  Image                     .mean() brightness 0..1, .stddev(), .difference(other) 0..1 (RMSE), .path,
                            .crop((x, y, w, h), path) -> Image, .average_rgb() -> (r, g, b) 0..1

Names and roles are AT-SPI's (role names as pyatspi spells them: "push button", "list item",
"label", "frame", "panel", "list"). The accessibility tree is read without caching, so every
property read asks the program; a read that a busy program does not answer within D-Bus's
deadline is asked again. Qt reports a scaled item's corner where the scaling moved it, with its
unscaled size, and gives items at opacity 0 no place (rect None).
"""

import os
import re
import select
import shutil
import subprocess
import tempfile
import time
from dataclasses import dataclass

from private_service import PrivateService, ServiceError, applied, poll_until, start_daemon, stop

ACCESSIBILITY_BUS_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


class SessionError(ServiceError):
    pass


@dataclass(frozen=True)
class Rect:
    x: int
    y: int
    width: int
    height: int

    @property
    def center(self):
        return (self.x + self.width // 2, self.y + self.height // 2)

    def contains(self, x, y):
        return self.x <= x < self.x + self.width and self.y <= y < self.y + self.height

    def geometry(self):
        return f"{self.width}x{self.height}+{self.x}+{self.y}"


class Image:
    """A screenshot on disk, measured with ImageMagick."""

    def __init__(self, path):
        self.path = path

    def _fx(self, expression):
        out = subprocess.run(["convert", self.path, "-colorspace", "Gray", "-format", expression, "info:"],
                             capture_output=True, text=True, check=True).stdout
        return float(out.strip())

    def mean(self):
        return self._fx("%[fx:mean]")

    def stddev(self):
        return self._fx("%[fx:standard_deviation]")

    def crop(self, region, path):
        """The part of the image inside region (x, y, width, height), written to path."""
        x, y, width, height = region
        subprocess.run(["convert", self.path, "-crop", f"{width}x{height}+{x}+{y}", "+repage", path], check=True)
        return Image(path)

    def average_rgb(self):
        """The mean colour, each channel 0..1."""
        out = subprocess.run(["convert", self.path, "-resize", "1x1!", "-format", "%[fx:r],%[fx:g],%[fx:b]", "info:"],
                             capture_output=True, text=True, check=True).stdout
        return tuple(float(v) for v in out.strip().split(","))

    def difference(self, other):
        # `compare` writes the metric to standard error as "absolute (normalised)".
        result = subprocess.run(["compare", "-metric", "RMSE", self.path, other.path, "null:"],
                                capture_output=True, text=True)
        match = re.search(r"\(([0-9.eE+-]+)\)", result.stderr)
        if not match:
            raise SessionError(f"compare failed: {result.stderr.strip()}")
        return float(match.group(1))


def _patient(ask, attempts=3):
    """Asks again when a busy program missed D-Bus's 25 s reply deadline (a loaded machine, a long frame)."""
    from gi.repository import GLib
    for attempt in range(attempts):
        try:
            return ask()
        except GLib.Error as error:
            if "Did not receive a reply" not in str(error) or attempt + 1 == attempts:
                raise


class Node:
    """One accessible object of a program."""

    def __init__(self, accessible):
        self._a = accessible

    @property
    def name(self):
        return _patient(lambda: self._a.name or "")

    @property
    def role(self):
        return _patient(self._a.getRoleName)

    @property
    def rect(self):
        """Where it is on the screen; None for objects without a place (no Component interface)."""
        import pyatspi
        try:
            component = _patient(self._a.queryComponent)
        except NotImplementedError:
            return None
        extents = _patient(lambda: component.getExtents(pyatspi.DESKTOP_COORDS))
        return Rect(extents.x, extents.y, extents.width, extents.height)

    @property
    def center(self):
        return self.rect.center

    @property
    def children(self):
        return _patient(lambda: [Node(child) for child in self._a if child is not None])

    @property
    def states(self):
        import pyatspi
        return _patient(lambda: {pyatspi.stateToString(s) for s in self._a.getState().getStates()})

    @property
    def showing(self):
        return "showing" in self.states

    @property
    def description(self):
        return _patient(lambda: self._a.description or "")

    @property
    def value(self):
        """A slider's (or other ranged control's) current value; None for objects without one."""
        try:
            return _patient(lambda: self._a.queryValue().currentValue)
        except NotImplementedError:
            return None

    def descendants(self):
        stack = list(self.children)
        while stack:
            node = stack.pop(0)
            yield node
            stack.extend(node.children)

    def __repr__(self):
        return f"<{self.role} {self.name!r}>"


class App:
    def __init__(self, session, process, accessible):
        self.session = session
        self.process = process
        self.log = None
        self.root = Node(accessible)

    def send(self, line):
        self.process.stdin.write((line + "\n").encode())
        self.process.stdin.flush()

    def cpu_seconds(self, thread=None):
        """User and system time so far, of the whole process or of its threads with this name."""
        def seconds(stat_path):
            with open(stat_path) as stat:
                fields = stat.read().rsplit(")", 1)[1].split()
            return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
        if thread is None:
            return seconds(f"/proc/{self.process.pid}/stat")
        total = 0.0
        for task in os.listdir(f"/proc/{self.process.pid}/task"):
            try:
                with open(f"/proc/{self.process.pid}/task/{task}/comm") as comm:
                    if comm.read().strip() == thread:
                        total += seconds(f"/proc/{self.process.pid}/task/{task}/stat")
            except FileNotFoundError:  # a thread that just ended
                pass
        return total

    def find_all(self, name=None, role=None, within=None, exact=True):
        base = within or self.root
        found = []
        for node in base.descendants():
            if role is not None and node.role != role:
                continue
            if name is not None and (node.name != name if exact else name not in node.name):
                continue
            found.append(node)
        return found

    def find(self, name=None, role=None, within=None, timeout=20, exact=True):
        def first():
            nodes = self.find_all(name, role, within, exact)
            return nodes[0] if nodes else None
        return self.session.wait(first, timeout, f"no {role or 'object'} named {name!r}")


class XSession(PrivateService):
    """Xvfb on a free display and a session bus of its own, with HOME and the XDG folders in a
    temporary folder: a graphical session apart from the user's.

    .env      the session's environment (a dict)
    .exports  what a test process takes over to live in the session: the variables it sets, and
              None for each one it removes (WAYLAND_DISPLAY)
    """
    prefix = "quellton-session-"

    def __init__(self, size=(1280, 720), depth=24):
        self.size = size
        self.depth = depth
        self.folder = tempfile.mkdtemp(prefix=self.prefix)
        self.env = dict(os.environ)
        self.exports = {}
        self._processes = []

    def _start(self):
        for sub in ("home", "config", "cache", "data", "state", "runtime"):
            os.makedirs(self._path(sub))
        os.chmod(self._path("runtime"), 0o700)
        # GSettings in a key file under the private config folder: dconf would hold the bus, and GIO
        # ends a process whose bus goes away (the session's own end at the test's end).
        self._export(HOME=self._path("home"), XDG_CONFIG_HOME=self._path("config"), XDG_CACHE_HOME=self._path("cache"),
                     XDG_DATA_HOME=self._path("data"), XDG_STATE_HOME=self._path("state"),
                     XDG_RUNTIME_DIR=self._path("runtime"), GSETTINGS_BACKEND="keyfile", QT_QPA_PLATFORM="xcb",
                     WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=None)
        self._start_x()
        bus = self._path("runtime", "bus")
        self._spawn(["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address=unix:path={bus}"])
        self._export(DBUS_SESSION_BUS_ADDRESS=f"unix:path={bus}")
        self.wait(lambda: os.path.exists(bus), 10, "the session bus did not start")

    def _export(self, **changes):
        self.exports.update(changes)
        self.env = applied(self.env, changes)

    def _path(self, *parts):
        return os.path.join(self.folder, *parts)

    def _start_x(self):
        read, write = os.pipe()
        width, height = self.size
        self._spawn(["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x{self.depth}", "-nolisten",
                     "tcp", "-noreset", "+extension", "GLX"], pass_fds=(write,))
        os.close(write)
        number = b""
        deadline = time.monotonic() + 20
        # Xvfb picks a free display itself and writes its number to the pipe.
        while not number.endswith(b"\n") and time.monotonic() < deadline:
            if not select.select([read], [], [], 0.2)[0]:
                continue
            chunk = os.read(read, 16)
            if not chunk:
                break
            number += chunk
        os.close(read)
        if not number.endswith(b"\n"):
            raise SessionError("Xvfb did not start")
        self._export(DISPLAY=":" + number.decode().strip())

    def _spawn(self, argv, **options):
        process = start_daemon(argv, self.env, **options)
        self._processes.append(process)
        return process

    def close(self):
        for process in reversed(self._processes):
            stop(process)
        shutil.rmtree(self.folder, ignore_errors=True)

    def wait(self, predicate, timeout=30, message=""):
        if not poll_until(predicate, timeout, 0.05):
            raise SessionError(message)


class DesktopSession(XSession):
    prefix = "quellton-desktop-"

    def __init__(self, size=(1600, 1000), window_manager="openbox"):
        super().__init__(size)
        self.window_manager = window_manager
        self._apps = []
        self._shots = 0

    # -- the session --------------------------------------------------------------------------

    def _start(self):
        self._export(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_ACCESSIBILITY="1", NO_AT_BRIDGE="0",
                     MESA_SHADER_CACHE_DISABLE="true", AT_SPI_BUS_ADDRESS=None, XDG_CURRENT_DESKTOP=None)
        super()._start()
        self._spawn([ACCESSIBILITY_BUS_LAUNCHER, "--launch-immediately"])
        self.wait(self._accessibility_bus_address, 15, "the accessibility bus did not start")
        if self.window_manager:
            self._spawn([self.window_manager])
            self.wait(self._window_manager_running, 15, f"{self.window_manager} did not take the screen")
        # pyatspi reads the session's bus addresses when it is first imported.
        os.environ.update({k: self.env[k] for k in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR")})
        import pyatspi
        from gi.repository import Atspi
        # Every read asks the program: nothing here runs the event loop that would keep a cache fresh.
        pyatspi.Registry.getDesktop(0).set_cache_mask(Atspi.Cache.NONE)

    def _accessibility_bus_address(self):
        result = self.run(["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                           "org.a11y.Bus.GetAddress"])
        return result.returncode == 0

    def _window_manager_running(self):
        result = self.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"])
        return result.returncode == 0 and "window id" in result.stdout

    def close(self):
        for app in self._apps:
            stop(app.process)
            if app.log:
                app.log.close()
        super().close()

    def run(self, argv):
        return subprocess.run(argv, env=self.env, capture_output=True, text=True, timeout=60)

    # -- programs -----------------------------------------------------------------------------

    def launch(self, argv, app_name, stdin=False, timeout=60, log=None):
        import pyatspi
        output = open(log, "wb") if log else subprocess.DEVNULL
        process = subprocess.Popen(argv, env=self.env, stdin=subprocess.PIPE if stdin else subprocess.DEVNULL,
                                   stdout=output, stderr=subprocess.STDOUT, start_new_session=True)

        def registered():
            if process.poll() is not None:
                raise SessionError(f"{argv[0]} ended with status {process.returncode}")
            desktop = pyatspi.Registry.getDesktop(0)
            for child in desktop:
                if child is not None and child.name == app_name and child.get_process_id() == process.pid:
                    return child
            return None

        app = App(self, process, self.wait(registered, timeout, f"{app_name} did not appear on the accessibility bus"))
        app.log = output if log else None
        self._apps.append(app)
        return app

    # -- a person's hands and eyes ------------------------------------------------------------

    def _xdotool(self, *args):
        result = self.run(["xdotool", *map(str, args)])
        if result.returncode != 0:
            raise SessionError(f"xdotool {' '.join(map(str, args))}: {result.stderr.strip()}")

    @staticmethod
    def _point(target):
        if isinstance(target, Node):
            return target.center
        if isinstance(target, Rect):
            return target.center
        return target

    def move(self, target):
        x, y = self._point(target)
        self._xdotool("mousemove", "--sync", x, y)

    def click(self, target, button=1):
        self.move(target)
        self._xdotool("click", button)

    def double_click(self, target):
        self.move(target)
        self._xdotool("click", "--repeat", 2, 1)

    def key(self, keys):
        self._xdotool("key", keys)

    def screenshot(self, path=None, region=None):
        if path is None:
            self._shots += 1
            path = os.path.join(self.folder, f"shot-{self._shots}.png")
        argv = ["import", "-window", "root"]
        if region is not None:
            argv += ["-crop", region.geometry(), "+repage"]
        result = self.run(argv + [path])
        if result.returncode != 0:
            raise SessionError(f"import failed: {result.stderr.strip()}")
        return Image(path)

    def wait(self, predicate, timeout=30, message=""):
        deadline = time.monotonic() + timeout
        last_error = None
        while True:
            try:
                value = predicate()
                if value:
                    return value
            except SessionError:
                raise
            except Exception as error:  # the tree changes under our feet while a program updates
                last_error = error
            if time.monotonic() > deadline:
                detail = f" (last error: {last_error})" if last_error else ""
                raise AssertionError(f"timed out after {timeout} s: {message}{detail}")
            time.sleep(0.1)

