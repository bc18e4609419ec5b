"""The real KDE Plasma 5.27 in a private session, for tests: KWin and plasmashell with Folder View.

    from plasma_session import PlasmaSession

    with PipeWireServer() as pipewire, PlasmaSession("wayland", pipewire) as plasma:
        plasma.install_wallpaper(package_folder)
        plasma.evaluate("print(desktops().length)")
        shot = plasma.screenshot()           # desktop_session.Image of the whole screen

"wayland" runs `kwin_wayland --virtual` (a plain copy of the binary: the installed one carries a
file capability this container refuses), "x11" runs kwin_x11 on Xvfb. Both take screenshots through
KWin's org.kde.KWin.ScreenShot2. Everything lives in the session's temporary folder (an XSession's):
HOME with ~/Desktop holding one file Folder View shows as an icon, the XDG folders, the bus.
PipeWire is the given private server (with WirePlumber: without a session manager no stream is
linked). The session's environment (.env) is what programs under test are started with.

    .plasmashell            the running plasmashell (a subprocess.Popen)
    .evaluate(script)       org.kde.PlasmaShell.evaluateScript; returns what the script print()s
    .kwin_script(text)      runs JavaScript in KWin (e.g. to make a window fullscreen)
    .desktops()             every desktop's screen, plugin and NodeId
    .wallpaper(key...)      screen 0's desktop: (plugin, {key: value}) of its current plugin's General group
    .screenshot(path=None)  desktop_session.Image; copied into $QUELLTON_TEST_SHOTS too when that is set
    .logs()                 the end of KWin's and plasmashell's logs, for failure messages
"""

import os
import shutil
import subprocess

from desktop_session import Image, SessionError, XSession
from private_service import poll_until

SCREEN = (1280, 720)


class PlasmaSession(XSession):
    prefix = "quellton-plasma-"

    def __init__(self, kind, pipewire, outputs=1):
        super().__init__(size=SCREEN)
        self.kind = kind
        self.outputs = outputs  # kwin_wayland's virtual outputs side by side; X11 has one screen
        self.pipewire = pipewire
        self._shots = 0

    def _start(self):
        super()._start()
        os.makedirs(self._path("home", "Desktop"))
        with open(self._path("home", "Desktop", "Notiz.txt"), "w") as note:
            note.write("Quellton\n")
        self._export(XDG_CURRENT_DESKTOP="KDE", KDE_FULL_SESSION="true", KDE_SESSION_VERSION="5",
                     KWIN_SCREENSHOT_NO_PERMISSION_CHECKS="1", MESA_SHADER_CACHE_DISABLE="true",
                     PIPEWIRE_RUNTIME_DIR=self.pipewire.env["PIPEWIRE_RUNTIME_DIR"],
                     PULSE_SERVER=self.pipewire.env["PULSE_SERVER"], PIPEWIRE_REMOTE=None)
        if self.kind == "wayland":
            self._start_kwin_wayland()
        else:
            self._export(XDG_SESSION_TYPE="x11", QT_QPA_PLATFORM="xcb")
            self._kwin = self._spawn_logged(["kwin_x11", "--replace"], "kwin")
            self.wait(lambda: self._bus_has("org.kde.KWin"), 30, "kwin_x11 did not start\n" + self.logs())
        # kactivitymanagerd and other helpers are started by the bus: they need the session's variables.
        subprocess.run(["dbus-update-activation-environment", "WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM",
                        "XDG_SESSION_TYPE", "XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                        "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_CURRENT_DESKTOP", "KDE_FULL_SESSION",
                        "PIPEWIRE_RUNTIME_DIR"], env=self.env, check=True, capture_output=True)
        self.plasmashell = self._spawn_logged(["plasmashell", "--no-respawn"], "plasmashell")
        self.wait(self._desktop_ready, 90, "plasmashell showed no desktop\n" + self.logs())

    def _start_x(self):
        if self.kind == "x11":
            super()._start_x()
        else:
            self._export(DISPLAY=None)

    def _start_kwin_wayland(self):
        kwin = self._path("kwin_wayland")
        shutil.copy("/usr/bin/kwin_wayland", kwin)
        width, height = SCREEN
        self._export(XDG_SESSION_TYPE="wayland", QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY="quellton-kwin")
        self._kwin = self._spawn_logged([kwin, "--virtual", "--width", str(width), "--height", str(height),
                                         "--output-count", str(self.outputs), "--socket", "quellton-kwin",
                                         "--no-lockscreen"], "kwin")
        self.wait(lambda: os.path.exists(self._path("runtime", "quellton-kwin")) and self._bus_has("org.kde.KWin"),
                  30, "kwin_wayland did not start\n" + self.logs())

    def _spawn_logged(self, argv, name):
        with open(self._path(f"{name}.log"), "ab") as log:
            process = subprocess.Popen(["setpriv", "--pdeathsig", "TERM", "--", *argv], env=self.env,
                                       stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT,
                                       start_new_session=True)
        self._processes.append(process)
        return process

    def _bus_has(self, name):
        result = subprocess.run(["qdbus", name], env=self.env, capture_output=True, text=True)
        return result.returncode == 0

    def _desktop_ready(self):
        if self.plasmashell.poll() is not None:
            raise SessionError("plasmashell ended\n" + self.logs())
        try:
            return self.evaluate("print(desktops().length)").strip() not in ("", "0")
        except SessionError:
            return False

    def evaluate(self, script):
        result = subprocess.run(["qdbus", "org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell.evaluateScript",
                                 script], env=self.env, capture_output=True, text=True, timeout=30)
        if result.returncode != 0:
            raise SessionError(f"evaluateScript failed: {result.stdout}{result.stderr}")
        return result.stdout

    def wallpaper(self, *keys):
        """Screen 0's desktop: its wallpaper plugin and the given keys of that plugin's General group."""
        import json
        answer = self.evaluate("""var d = desktops().filter(function (d) { return d.screen == 0; })[0];
d.currentConfigGroup = ['Wallpaper', d.wallpaperPlugin, 'General'];
var values = {};
%s.forEach(function (k) { values[k] = d.readConfig(k); });
print(JSON.stringify({plugin: d.wallpaperPlugin, values: values}));""" % json.dumps(list(keys)))
        data = json.loads(answer)
        return data["plugin"], data["values"]

    def desktops(self):
        """Every desktop's screen, wallpaper plugin and that plugin's NodeId (ours has one)."""
        import json
        return json.loads(self.evaluate("""print(JSON.stringify(desktops().map(function (d) {
    d.currentConfigGroup = ['Wallpaper', d.wallpaperPlugin, 'General'];
    return {screen: d.screen, plugin: d.wallpaperPlugin, node: d.readConfig('NodeId')};
})));"""))

    def set_image_wallpaper(self, image_url, fill_mode):
        self.evaluate("""desktops().forEach(function (d) {
    d.wallpaperPlugin = 'org.kde.image';
    d.currentConfigGroup = ['Wallpaper', 'org.kde.image', 'General'];
    d.writeConfig('Image', %r);
    d.writeConfig('FillMode', %d);
});""" % (image_url, fill_mode))

    def kwin_script(self, text):
        """Runs a KWin script (JavaScript on KWin's `workspace`), as a user's KWin script would."""
        self._scripts = getattr(self, "_scripts", 0) + 1
        path = self._path(f"kwin-script-{self._scripts}.js")
        with open(path, "w") as script:
            script.write(text)
        for argv in (["org.kde.kwin.Scripting.loadScript", path, f"quellton-test-{self._scripts}"],
                     ["org.kde.kwin.Scripting.start"]):
            result = subprocess.run(["qdbus", "org.kde.KWin", "/Scripting", *argv], env=self.env, capture_output=True,
                                    text=True, timeout=30)
            if result.returncode != 0:
                raise SessionError(f"KWin refused the script: {result.stdout}{result.stderr}")

    def install_wallpaper(self, package):
        """Our plugin where a user's own Plasma wallpapers live (plasmashell finds new ones when asked)."""
        target = os.path.join(self.env["XDG_DATA_HOME"], "plasma", "wallpapers", os.path.basename(package))
        shutil.copytree(package, target)

    def screenshot(self, path=None):
        """The whole workspace through KWin; the image comes through a pipe."""
        from gi.repository import Gio, GLib
        self._shots += 1
        path = path or self._path(f"shot-{self._shots}.png")
        address = self.env["DBUS_SESSION_BUS_ADDRESS"]
        bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None)
        read, write = os.pipe()
        fds = Gio.UnixFDList.new()
        fds.append(write)
        os.close(write)
        try:
            reply, _ = bus.call_with_unix_fd_list_sync(
                "org.kde.KWin", "/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2", "CaptureWorkspace",
                GLib.Variant("(a{sv}h)", ({}, 0)), GLib.VariantType("(a{sv})"), Gio.DBusCallFlags.NONE, 20000, fds,
                None)
        except GLib.Error:
            os.close(read)
            raise
        finally:
            del fds  # our copy of the writing end: the reader sees the end of the data only when KWin's is closed too
        info = reply.unpack()[0]
        with os.fdopen(read, "rb") as pipe:
            data = pipe.read()
        width, height, stride = info["width"], info["height"], info["stride"]
        rows = b"".join(data[y * stride:y * stride + width * 4] for y in range(height))
        # QImage's 32-bit formats lie in memory as B, G, R, A.
        subprocess.run(["convert", "-size", f"{width}x{height}", "-depth", "8", "bgra:-", "-alpha", "off", path],
                       input=rows, check=True)
        bus.close_sync(None)
        keep = os.environ.get("QUELLTON_TEST_SHOTS")  # a folder where a person looks at them afterwards
        if keep:
            os.makedirs(keep, exist_ok=True)
            shutil.copy(path, os.path.join(keep, f"{self.kind}-{os.path.basename(path)}"))
        return Image(path)

    def close(self):
        # The bus starts helpers of its own (kactivitymanagerd, kded5, gvfsd) that outlive it.
        bus = self.env.get("DBUS_SESSION_BUS_ADDRESS", "")
        super().close()
        for pid in (int(p) for p in os.listdir("/proc") if p.isdigit()):
            try:
                with open(f"/proc/{pid}/environ", "rb") as environ:
                    if bus and f"DBUS_SESSION_BUS_ADDRESS={bus}\0".encode() in environ.read():
                        os.kill(pid, 15)
            except OSError:
                pass

    def logs(self):
        text = ""
        for name in ("kwin", "plasmashell"):
            try:
                with open(self._path(f"{name}.log"), errors="replace") as log:
                    text += f"==> {name}.log <==\n" + "".join(log.readlines()[-25:])
            except FileNotFoundError:
                pass
        return text
