"""The built program on the real KDE Plasma 5.27 (kwin_wayland or kwin_x11, plasmashell, Folder View),
with a private PipeWire and WirePlumber: our wallpaper plugin shows the live picture behind the icons,
a still when the program is gone, and the user's own wallpaper comes back exactly.

Run by ctest as: python3 plasma_wallpaper_test.py PROGRAM PACKAGE wayland|x11   (tests/support on PYTHONPATH)
"""

import json
import os
import shutil
import signal
import subprocess
import sys
import time
import unittest

from desktop_session import Image
from plasma_session import PlasmaSession
from private_service import poll_until
from pulse_server import PipeWireServer

PROGRAM, PACKAGE, KIND = sys.argv[1:4]
OURS = os.path.basename(PACKAGE)
USER_IMAGE = "file:///usr/share/wallpapers/Next/contents/images/1280x800.png"
USER_FILL = 1  # "Scaled", not the image plugin's default, so a lost value shows
# Regions of the 1280 x 720 screen: Folder View's first icon (top left), the panel, and the
# wallpaper between them.
ICON = (36, 12, 44, 56)
PANEL = (0, 680, 1280, 40)
PICTURE = (200, 100, 880, 500)
# On Wayland two outputs side by side, each with its own stream; Xvfb has one screen.
OUTPUTS = 2 if KIND == "wayland" else 1
SECOND_PICTURE = (1280 + 200, 100, 880, 500)


def crop(image, region, name):
    x, y, w, h = region
    path = os.path.splitext(image.path)[0] + f"-{name}.png"
    subprocess.run(["convert", image.path, "-crop", f"{w}x{h}+{x}+{y}", "+repage", path], check=True)
    return Image(path)


class PlasmaWallpaper(unittest.TestCase):
    """One session for all tests. The live picture's test runs last (unittest's order is by name): it
    restarts PipeWire, after which plasmashell 5.27 shows no stream until it restarts itself."""

    @classmethod
    def setUpClass(cls):
        cls.pipewire = PipeWireServer().__enter__()
        try:
            cls.plasma = PlasmaSession(KIND, cls.pipewire, outputs=OUTPUTS).__enter__()
        except BaseException:
            cls.pipewire.close()
            raise
        cls.plasma.install_wallpaper(PACKAGE)
        cls.config = os.path.join(cls.plasma.env["XDG_CONFIG_HOME"], "Quellton", "Quellton.conf")
        os.makedirs(os.path.dirname(cls.config))
        with open(cls.config, "w") as config:
            config.write("[General]\nfps=30\ncurrent=nation\nsyncSystemWallpaper=false\n")
        cls.pipewire.play(cls.pipewire.tone("tone.wav", seconds=600, frequencies=(80, 1000, 5000)))
        cls.program = None

    @classmethod
    def tearDownClass(cls):
        cls.stop_program(signal.SIGKILL)
        cls.plasma.close()
        cls.pipewire.close()

    @classmethod
    def stop_program(cls, sig=signal.SIGTERM):
        if cls.program and cls.program.poll() is None:
            cls.program.send_signal(sig)
            cls.program.wait(timeout=15)
        cls.program = None

    def tearDown(self):
        self.stop_program()

    def start_program(self):
        log = open(os.path.join(self.plasma.folder, "quellton.log"), "ab")
        type(self).program = subprocess.Popen([PROGRAM, "--autostart"], env=self.plasma.env, stdin=subprocess.DEVNULL,
                                              stdout=log, stderr=subprocess.STDOUT)
        log.close()
        ours = poll_until(lambda: self.plasma.wallpaper("NodeId")[0] == OURS and
                          int(self.plasma.wallpaper("NodeId")[1]["NodeId"] or 0) > 0, 60, 0.5)
        self.assertTrue(ours, "the desktop did not get our plugin with a stream\n" + self.logs())

    def logs(self):
        path = os.path.join(self.plasma.folder, "quellton.log")
        program = ""
        if os.path.exists(path):
            with open(path, errors="replace") as log:
                program = log.read()[-3000:]
        return f"==> quellton.log <==\n{program}\n{self.plasma.logs()}"

    def assert_user_wallpaper_back(self, plugin, values):
        back = poll_until(lambda: self.plasma.wallpaper(*values) == (plugin, values), 20, 0.5)
        self.assertTrue(back, f"not given back: {self.plasma.wallpaper(*values)}\n{self.logs()}")
        self.assertEqual([d["plugin"] for d in self.plasma.desktops()], [plugin] * OUTPUTS)
        self.assertIsNone(saved_record(self.config), "the saved wallpapers stay in the settings")

    def stream_state(self):
        """PipeWire's state of the first screen's stream: running while someone watches it."""
        node = int(self.plasma.wallpaper("NodeId")[1]["NodeId"] or 0)
        # pw-dump may print a second document when objects change while it writes: the first counts.
        dump, _ = json.JSONDecoder().raw_decode(self.pipewire.run(["pw-dump"]).stdout.lstrip() or "[]")
        for item in dump:
            if item.get("id") == node:
                return (item.get("info") or {}).get("state")
        return None

    def covering_window(self):
        if KIND == "wayland":
            return ["weston-fullscreen"]
        return ["xmessage", "Quellton"]

    def assert_shows_still(self):
        """The plugin shows the newest still the program wrote, not a flat colour."""
        stills = os.path.join(self.plasma.env["XDG_DATA_HOME"], "Quellton", "Hintergrund")
        copy = os.path.join(self.plasma.folder, "still.jpg")

        def shows_still():
            # The first screen's still comes first by name (Virtual-0 before Virtual-1).
            names = sorted(f for f in os.listdir(stills) if f.startswith("plasma-")) if os.path.isdir(stills) else []
            if not names:
                return False
            shutil.copy(os.path.join(stills, names[0]), copy)
            shot = crop(self.plasma.screenshot(), PICTURE, "s")
            return shot.difference(crop(Image(copy), PICTURE, "f")) < 0.03 and shot
        shot = poll_until(shows_still, 30, 0.5)
        self.assertTrue(shot, "the still does not show\n" + self.logs())
        self.assertGreater(shot.stddev(), 0.01, "the desktop is one flat colour")

    def live_shots(self):
        """Two screenshots once the live picture runs, a second apart. Until it runs, the plugin
        shows a still or a dark tone, never black (a new picture fades in from black); only Plasma's
        own switch of plugins may show black for a moment."""
        first = poll_until(lambda: (lambda shot: crop(shot, PICTURE, "n").mean() > 0.01 and shot)(
            self.plasma.screenshot()), 2, 0.2)
        self.assertTrue(first, "black after the switch to our plugin")

        def changed():
            shot = crop(self.plasma.screenshot(), PICTURE, "p")
            self.assertGreater(shot.mean(), 0.01, "black while the stream starts")
            return shot.difference(crop(first, PICTURE, "p")) > 0.01
        self.assertTrue(poll_until(changed, 30, 0.3), "the picture never changes")
        time.sleep(1)
        return self.plasma.screenshot(), self.plasma.screenshot()

    def users_image_shown(self):
        self.plasma.set_image_wallpaper(USER_IMAGE, USER_FILL)
        # The image plugin fades its picture in.
        before = poll_until(lambda: (lambda shot: crop(shot, PICTURE, "u").stddev() > 0.05 and shot)(
            self.plasma.screenshot()), 20, 0.5)
        self.assertTrue(before, "the user's image does not show")
        return before

    def test_live_picture_behind_the_icons_and_the_users_image_back_after_quit(self):
        before = self.users_image_shown()
        self.start_program()
        first, second = self.live_shots()
        time.sleep(1)
        third = self.plasma.screenshot()

        moved = crop(first, PICTURE, "a").difference(crop(third, PICTURE, "b"))
        self.assertGreater(moved, 0.01, "the picture does not move")
        # Every screen has a stream of its own, and each picture moves.
        nodes = [d["node"] for d in self.plasma.desktops() if d["plugin"] == OURS]
        self.assertEqual(len(set(nodes)), OUTPUTS, f"not one stream per screen: {nodes}")
        if OUTPUTS > 1:
            self.assertGreater(crop(first, SECOND_PICTURE, "a2").difference(crop(third, SECOND_PICTURE, "b2")), 0.01,
                               "the second screen's picture does not move")
        self.assertGreater(crop(before, PICTURE, "u").difference(crop(third, PICTURE, "c")), 0.05,
                           "the user's wallpaper still shows")
        # Folder View's icon and the panel lie over the picture: they stay as they are while it moves.
        self.assertLess(crop(first, ICON, "i1").difference(crop(third, ICON, "i2")), 0.06, "the icon is not on top")
        self.assertGreater(crop(third, ICON, "i3").mean(), 0.5, "no light file icon at the top left")
        self.assertLess(crop(first, PANEL, "k1").difference(crop(third, PANEL, "k2")), 0.02, "the panel is not on top")

        # Plasma 6's plugin sends presses this way (Plasma 5 has no D-Bus for QML): numbers as doubles.
        node = self.plasma.wallpaper("NodeId")[1]["NodeId"]
        press = subprocess.run(["qdbus", "io.github.quellton.Quellton", "/io/github/quellton/Quellton/Wallpaper",
                                "io.github.quellton.Quellton.Wallpaper.Press", node, "640.0", "360.0", "1.0"],
                               env=self.plasma.env, capture_output=True, text=True)
        self.assertEqual(press.returncode, 0, press.stdout + press.stderr)

        # A fullscreen window on the screen: the plugin stops watching and the stream stops running.
        self.assertEqual(self.stream_state(), "running")
        window = subprocess.Popen(self.covering_window(), env=self.plasma.env, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            time.sleep(2)
            self.plasma.kwin_script("workspace.clientList().forEach(function (c) {\n"
                                    "    if (c.normalWindow) c.fullScreen = true;\n});\n")
            self.assertTrue(poll_until(lambda: self.stream_state() != "running", 20, 0.5),
                            "the stream runs under a fullscreen window\n" + self.logs())
        finally:
            window.terminate()
            window.wait(timeout=10)
        self.assertTrue(poll_until(lambda: self.stream_state() == "running", 20, 0.5),
                        "the stream does not run again after the window closed")

        # PipeWire restarts: a new stream, and the plugin is told its node. plasmashell 5.27's kpipewire
        # keeps its dead connection, so there the plugin falls back to the still, never to black.
        node = self.plasma.wallpaper("NodeId")[1]["NodeId"]
        generation = self.plasma.wallpaper("Generation")[1]["Generation"]
        self.pipewire.kill()
        self.pipewire.restart()
        renewed = poll_until(lambda: self.plasma.wallpaper("Generation")[1]["Generation"] != generation and
                             self.plasma.wallpaper("NodeId")[1]["NodeId"] != "0", 30, 0.5)
        self.assertTrue(renewed, "the plugin was not told a new stream after PipeWire came back\n" + self.logs())
        self.assert_shows_still()

        self.stop_program()
        self.assert_user_wallpaper_back("org.kde.image", {"Image": USER_IMAGE, "FillMode": str(USER_FILL)})

    def test_after_a_crash_the_still_shows_and_the_next_start_gives_the_wallpaper_back(self):
        self.users_image_shown()
        self.start_program()
        self.live_shots()
        stills = os.path.join(self.plasma.env["XDG_DATA_HOME"], "Quellton", "Hintergrund")
        still = poll_until(lambda: [f for f in os.listdir(stills) if f.startswith("plasma-")] if os.path.isdir(stills)
                           else [], 40, 0.5)
        self.assertTrue(still, "no still written for the plugin")
        self.stop_program(signal.SIGKILL)
        self.assertEqual(self.plasma.wallpaper()[0], OURS)
        self.assert_shows_still()

        self.start_program()
        self.live_shots()
        self.stop_program()
        self.assert_user_wallpaper_back("org.kde.image", {"Image": USER_IMAGE, "FillMode": str(USER_FILL)})

    def test_a_users_own_wallpaper_plugin_comes_back_with_its_settings(self):
        self.plasma.evaluate("""desktops().forEach(function (d) {
    d.wallpaperPlugin = 'org.kde.color';
    d.currentConfigGroup = ['Wallpaper', 'org.kde.color', 'General'];
    d.writeConfig('Color', '51,102,153');
});""")
        self.start_program()
        self.stop_program()
        self.assert_user_wallpaper_back("org.kde.color", {"Color": "51,102,153"})


def saved_record(path):
    import settings_file
    return settings_file.stored(path, "saved")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
