"""The built program behind DING's icons on a real, headless GNOME Shell under Wayland, started by
our Shell extension as a user's shell would start it. The tests run in order in one shell session.

Run by ctest as: python3 gnome_shell_test.py PROGRAM EXTENSION_FOLDER   (tests/support on PYTHONPATH)
"""

import glob
import os
import subprocess
import sys
import tempfile
import time
import unittest

from desktop_session import Image
from gnome_shell import GnomeShell

UUID = "quellton@quellton.github.io"
DING = "ding@rastersoft.com"
SIZE = (1280, 720)
# Below the shell's notifications and right of DING's icon column: only the picture (or the static
# wallpaper).
PICTURE = (300, 130, 960, 580)
ICONS = (0, 40, 130, 560)
PLAIN = (1150, 40, 130, 560)  # as wide as the icon column, where no icon is
BELOW_BAR = (0, 130, 1280, 590)  # also below the shell's notifications, which come and go


class GnomeShellDesktop(unittest.TestCase):
    program = None
    extension = None

    @classmethod
    def setUpClass(cls):
        cls.shots = tempfile.mkdtemp(prefix="quellton-gnome-shots-")
        # The desktop-picture sync off: the static wallpaper is then GNOME's own plain colour.
        cls.shell = GnomeShell({DING: None, UUID: cls.extension}, size=SIZE, home_files={
            ".config/Quellton/Quellton.conf": "[General]\nsyncSystemWallpaper=false\n"})
        cls.shell.__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.shell.__exit__(None, None, None)
        print(f"screenshots in {cls.shots}", file=sys.stderr)

    # -- helpers ------------------------------------------------------------------------------

    def shot(self, name, region=None):
        image = Image(self.shell.screenshot(os.path.join(self.shots, f"{name}.png")))
        return image.crop(region, os.path.join(self.shots, f"{name}-part.png")) if region else image

    def program_pid(self):
        out = subprocess.run(["pgrep", "-u", "nobody", "-f", f"^{self.program} --gnome-shell-wallpaper"],
                             capture_output=True, text=True).stdout.split()
        return int(out[0]) if out else None

    def gpu_ticks(self, pid):
        """CPU time of the process's drawing threads (the render thread and llvmpipe's)."""
        ticks = 0
        for task in glob.glob(f"/proc/{pid}/task/*"):
            try:
                with open(f"{task}/comm") as f:
                    name = f.read().strip()
                with open(f"{task}/stat") as f:
                    fields = f.read().rsplit(")", 1)[1].split()
            except OSError:
                continue
            if name.startswith("llvmpipe") or name.endswith(".render"):
                ticks += int(fields[11]) + int(fields[12])
        return ticks

    def drawing(self, pid, seconds=2):
        before = self.gpu_ticks(pid)
        time.sleep(seconds)
        return self.gpu_ticks(pid) - before

    def is_static_wallpaper(self, image):
        # GNOME's default colour shows here (its picture does not load headless): plain blue.
        red, _, blue = image.average_rgb()
        return blue > 0.35 and red < 0.1

    def picture_moves(self, name):
        first = self.shot(f"{name}-1", PICTURE)
        time.sleep(1)
        second = self.shot(f"{name}-2", PICTURE)
        # Something drawn (not a black first frame), in both, and changing.
        drawn = all(not self.is_static_wallpaper(s) and s.stddev() > 0.02 for s in (first, second))
        return drawn and first.difference(second) > 0.002

    def wait_for_picture(self, name, timeout=150):  # a slow start: sanitizers, a loaded machine
        self.shell.wait(lambda: self.program_pid() and self.picture_moves(name), timeout,
                        "no moving picture on the desktop")

    # -- the tests, in order ------------------------------------------------------------------

    def test_1_moving_picture_under_the_icons(self):
        self.wait_for_picture("start")
        # DING's icons and labels lie over the picture: their column is much brighter than a
        # column of picture alone.
        icons = self.shot("icons", ICONS).mean()
        plain = self.shot("plain", PLAIN).mean()
        self.assertGreater(icons, plain + 0.08, "DING's icons are not over the picture")

    def test_2_no_wallpaper_window_in_lists(self):
        titles = self.shell.eval("global.display.list_all_windows().map(w => w.get_title())")
        ours = f"0,0,{SIZE[0]},{SIZE[1]}"
        self.assertIn(ours, titles, "the wallpaper window is missing")
        # alt-tab, the dash's running apps, the overview's window previews
        alt_tab = self.shell.eval("imports.ui.altTab.getWindows(null).map(w => w.get_title())")
        self.assertNotIn(ours, alt_tab)
        apps = self.shell.eval("Shell.AppSystem.get_default().get_running()"
                               ".flatMap(a => a.get_windows().map(w => w.get_title()))")
        self.assertNotIn(ours, apps)
        self.shell.eval("Main.overview.show()")
        self.shell.wait(lambda: self.shell.eval("Main.overview.animationInProgress === false && Main.overview.visible"),
                        20, "the overview did not open")
        previews = self.shell.eval("Main.overview._overview.controls._workspacesDisplay._workspacesViews[0]"
                                   "._workspaces.flatMap(ws => ws._windows.map(p => p.metaWindow.get_title()))")
        self.shell.eval("Main.overview.hide()")
        self.shell.wait(lambda: self.shell.eval("Main.overview.visible") is False, 20, "the overview stays")
        self.assertNotIn(ours, previews)

    def test_3_desktop_presses_reach_the_program(self):
        monitor = subprocess.Popen(["runuser", "-u", "nobody", "--", "env", *self.shell._env_list(), "dbus-monitor",
                                    "--session", "type='method_call',member='Click',"
                                    "interface='io.github.quellton.Quellton.ShellWallpaper'"],
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        try:
            time.sleep(3)  # dbus-monitor listens only once it has started
            # A left press on the top bar does not reach the program; one on the picture does, one on
            # an icon too (DING's window is the desktop).
            self.shell.press(300, 15)
            time.sleep(1)  # the bar lets go of the pointer
            self.shell.press(700, 600)
            self.shell.press(63, 80)
            self.shell.press(700, 600)  # nothing stays selected
            time.sleep(1)
        finally:
            monitor.terminate()
            out = monitor.communicate(timeout=10)[0]
        clicks = [tuple(float(line.split()[1]) for line in call.splitlines()[1:3])
                  for call in out.split("method call")[1:]]
        self.assertEqual(clicks, [(700.0, 600.0), (63.0, 80.0), (700.0, 600.0)])

    def test_4_fullscreen_window_stops_drawing(self):
        pid = self.program_pid()
        # Thumbnails share llvmpipe's threads, so hidden means far less work, not none.
        seen = self.drawing(pid, 3)
        self.assertGreater(seen, 20, "the picture does not draw")
        terminal = subprocess.Popen(["runuser", "-u", "nobody", "--", "env", *self.shell._env_list(), "foot",
                                     "--title=Vollbild", "sleep", "600"],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            find = "global.display.list_all_windows().find(w => w.get_title() === 'Vollbild')"
            self.shell.wait(lambda: self.shell.eval(f"Boolean({find})"), 30, "the terminal did not open")
            self.shell.eval(f"{find}.make_fullscreen()")
            self.shell.wait(lambda: self.drawing(pid, 3) < seen / 4, 20, "a fullscreen window does not stop the drawing")
            self.shell.eval(f"{find}.delete(global.get_current_time())")
            self.shell.wait(lambda: self.drawing(pid, 3) > seen / 2, 20, "the drawing does not come back")
            self.wait_for_picture("after-fullscreen")
        finally:
            terminal.kill()
            terminal.wait()

    def test_5_killed_program_leaves_static_wallpaper_then_returns(self):
        pid = self.program_pid()
        os.kill(pid, 9)
        time.sleep(0.3)
        shot = self.shot("killed")
        self.assertTrue(self.is_static_wallpaper(shot.crop(PICTURE, os.path.join(self.shots, "killed-picture.png"))),
                        "the picture stays after the program died")
        type(self).static_desktop = shot.crop(BELOW_BAR, os.path.join(self.shots, "killed-desktop.png"))
        self.shell.wait(lambda: self.program_pid() not in (None, pid), 20, "the program was not started again")
        self.wait_for_picture("restarted")

    def test_6_started_by_the_user_it_runs_from_the_extension(self):
        # Quit (as from the tray menu): it stays quit.
        pid = self.program_pid()
        os.kill(pid, 15)
        self.shell.wait(lambda: self.program_pid() is None, 20, "the program did not quit")
        time.sleep(4)
        self.assertIsNone(self.program_pid(), "the extension started a program the user quit")
        gallery = "imports.ui.altTab.getWindows(null).filter(w => w.get_title().includes('Darstellungen'))"
        # Started by the user, it hands over to the extension and ends; the program the extension
        # starts shows its gallery, an ordinary window, as any start by the user does.
        for start in ("user-start", "second-start"):
            started = self.shell.run([self.program], timeout=60, check=False)
            self.assertEqual(started.returncode, 0, started.stderr)
            self.shell.wait(lambda: self.shell.eval(f"{gallery}.length") == 1, 30, f"no gallery after the {start}")
            self.shell.eval(f"{gallery}.forEach(w => w.delete(global.get_current_time()))")
            self.shell.wait(lambda: self.shell.eval(f"{gallery}.length") == 0, 30, "the gallery stays")
            self.wait_for_picture(start)
            running = subprocess.run(["pgrep", "-u", "nobody", "-f", f"^{self.program}"], capture_output=True,
                                     text=True).stdout.split()
            self.assertEqual(len(running), 1, "not one instance")

    def test_7_disabling_gives_the_desktop_back(self):
        self.shell.call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Extensions.DisableExtension", UUID)
        self.shell.wait(lambda: self.program_pid() is None, 20, "the program outlived the extension")
        ours = f"0,0,{SIZE[0]},{SIZE[1]}"
        self.shell.wait(lambda: ours not in self.shell.eval("global.display.list_all_windows().map(w => w.get_title())"),
                        10, "the wallpaper window stays")
        self.assertTrue(self.is_static_wallpaper(self.shot("disabled-picture", PICTURE)))
        # Exactly the desktop the shell shows without us: the same as while the program was gone.
        # (The shell disables and enables again the extensions enabled after ours: DING may restart.)
        self.shell.wait(lambda: self.shot("disabled", BELOW_BAR).difference(self.static_desktop) < 0.01, 30,
                        "the desktop differs from the one without the picture")
        self.assertEqual(self.shell.eval("Main.layoutManager._backgroundGroup.get_n_children()"), 1)


if __name__ == "__main__":
    GnomeShellDesktop.program, GnomeShellDesktop.extension = sys.argv[1], sys.argv[2]
    unittest.main(argv=sys.argv[:1], verbosity=2)
