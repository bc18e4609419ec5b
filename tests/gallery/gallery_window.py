"""What both GUI tests of the gallery share: the gallery harness in a private desktop with openbox and a
settings file of the test's own, one window for a whole test class, and reads of what the window and the
settings file show.

Each test runs as: python3 TEST.py HARNESS   (tests/support on PYTHONPATH)
"""

import os
import sys
import time
import unittest

import settings_file
from desktop_session import DesktopSession

FIRST_TITLE = "Alle Darstellungen — 97 Darstellungen"
HARNESS = None


class GalleryWindow(unittest.TestCase):
    """One gallery for the whole class: the tests run in order."""

    size = (1600, 1000)
    settings = ""  # lines of the settings file's [General] group

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(DesktopSession(size=cls.size))
        cls.config = os.path.join(cls.desktop.folder, "config", "Quellton", "Quellton.conf")
        os.makedirs(os.path.dirname(cls.config))
        with open(cls.config, "w") as config:
            config.write("[General]\n" + cls.settings)
        cls.prepare()
        cls.launch()

    @classmethod
    def prepare(cls):
        """Anything the session needs before the program starts."""

    @classmethod
    def launch(cls):
        log = os.path.join(cls.desktop.folder, "harness.log")
        cls.app = cls.desktop.launch([HARNESS], "Quellton", stdin=True, log=log)
        cls.frame = cls.app.find(role="frame", timeout=60)
        # The window exists before its scene is made, and shows once it can be drawn.
        cls.desktop.wait(lambda: cls.frame.showing and cls.frame.children, 60, "the window did not show its scene")
        cls.desktop.wait(lambda: cls.frame.name == FIRST_TITLE, 30, "first title")

    def setUp(self):
        self.started = time.monotonic()

    def tearDown(self):
        print(f"  {self.id().rsplit('.', 1)[1]} took {time.monotonic() - self.started:.1f} s", file=sys.stderr)

    @property
    def content(self):
        return self.frame.children[0]

    def wait(self, predicate, message, timeout=30):
        return self.desktop.wait(predicate, timeout, message)

    def send(self, line, until, message):
        """A line on the harness's input, as the rest of the program would send it; then until the window shows it."""
        self.app.send(line)
        self.wait(until, message)

    def wait_title(self, title):
        self.wait(lambda: self.frame.name == title, f"the title {title!r}")

    def shown(self, name, role="label"):
        """The shown parts of the window's content outside the grid (the header, the audio status, the empty Mix's
        panel) with this name: direct children, so the hundreds of cards are not searched."""
        return [n for n in self.content.children if n.name == name and n.role == role and n.showing]

    def stored(self, key):
        return settings_file.stored(self.config, key)

    def wait_stored(self, key, value):
        """Until the settings file holds this text, or this number to within rounding."""
        def holds():
            text = self.stored(key)
            if isinstance(value, str):
                return text == value
            try:
                return abs(float(text) - value) < 1e-9
            except (TypeError, ValueError):
                return False
        self.wait(holds, f"{key}={value} is saved (now {self.stored(key)!r})")


def main():
    global HARNESS
    HARNESS = sys.argv.pop(1)
    unittest.main(module="__main__", verbosity=2)
