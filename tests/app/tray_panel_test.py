"""The tray symbol in xfce4-panel's real notification area, on a dark and on a light panel. Run from
its build folder the program has no icon theme entry, so the panel shows the symbol as drawn: it
must stand out from either panel all the same.

Run by ctest as: python3 tray_panel_test.py QUELLTON   (tests/support on PYTHONPATH)
"""

import os
import subprocess
import sys
import unittest

from desktop_session import DesktopSession, Rect

# One panel along the top with nothing but the notification area, so the symbol is all that changes.
PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty"><property name="plugin-1" type="string" value="systray"/></property>
</channel>
"""
STRIP = Rect(0, 0, 640, 32)


def magick(*arguments):
    return subprocess.run(["convert", *arguments], capture_output=True, text=True, check=True).stdout.strip()


class TraySymbolOnXfcePanel(unittest.TestCase):
    def symbol_contrast(self, theme):
        """The share of the symbol's pixels that differ from the bare panel by more than half the grey scale."""
        with DesktopSession(size=(640, 200), window_manager="xfwm4") as desktop:
            config = os.path.join(desktop.env["XDG_CONFIG_HOME"], "xfce4/xfconf/xfce-perchannel-xml")
            os.makedirs(config, exist_ok=True)
            with open(os.path.join(config, "xfce4-panel.xml"), "w") as file:
                file.write(PANEL)
            env = dict(desktop.env, GTK_THEME=theme)
            panel = subprocess.Popen(["xfce4-panel"], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            program = None
            try:
                desktop.wait(lambda: desktop.screenshot(region=STRIP).mean() > 0.05, 30, "the panel did not show")
                bare = desktop.screenshot(region=STRIP)
                desktop.wait(lambda: desktop.screenshot(region=STRIP).difference(bare) == 0, 10, "the panel keeps changing")
                program = subprocess.Popen([sys.argv[1], "--autostart"], env=env, stdout=subprocess.DEVNULL,
                                           stderr=subprocess.DEVNULL)
                with_symbol = desktop.wait(lambda: (lambda shot: shot if shot.difference(bare) > 0.01 else None)(
                    desktop.screenshot(region=STRIP)), 60, "no symbol in the notification area")
                difference = [bare.path, with_symbol.path, "-compose", "difference", "-composite", "-colorspace", "Gray"]
                box = magick(*difference, "-threshold", "8%", "-format", "%@", "info:")
                print(f"{theme}: symbol at {box}, screenshots {bare.path} {with_symbol.path}")
                return float(magick(*difference, "-crop", box, "-threshold", "50%", "-format", "%[fx:mean]", "info:"))
            finally:
                for process in (program, panel):
                    if process:
                        process.terminate()
                        process.wait(20)

    def test_the_symbol_stands_out_on_a_dark_and_on_a_light_panel(self):
        for theme in ("Adwaita:dark", "Adwaita"):
            with self.subTest(theme=theme):
                self.assertGreater(self.symbol_contrast(theme), 0.15)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
