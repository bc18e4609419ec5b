"""The gallery's toolbar, its popovers and the audio status, in a private desktop with openbox and a
private PulseAudio, used through the accessibility tree, real pointer events and the keyboard.

Run by ctest as: python3 gallery_controls_ui_test.py HARNESS   (tests/support on PYTHONPATH)
With QUELLTON_SHOTS set to a folder, a picture of each popover and of both audio states lands there.
"""

import os
import shutil
import stat
import time

import gallery_window
from desktop_session import Rect
from pulse_server import PulseServer

TOOLBAR = [
    ("Reaktion", "Wie stark der Hintergrund auf die Musik reagiert"),
    ("Mix", "Mix: ausgewählte Darstellungen wechseln sich ab"),
    ("Farben", "Farbwelt für alle Darstellungen"),
    ("Pausieren", "Hintergrund anhalten"),
    ("Einstellungen", "Einstellungen"),
]
BARS = ["Bass", "Mitten", "Höhen", "Schlag"]
SILENT_HINT = "Spiel Musik ab, um es auszuprobieren."
HEARING_HINT = "So stark kommt die Musik gerade an."
SYNC_TIP = ("Setzt das Schreibtischbild auf ein Standbild der laufenden Darstellung – für Übersicht, Anmelde- und "
            "Sperrbildschirm. Ausschalten stellt dein altes Bild wieder her.")
FOOTER = "„Sparsam“ schont den Akku. Im Stromsparmodus läuft Quellton immer mit 30 fps."

# Stands in for the desktop's sound mixer, which would open a window: it only notes that it was started.
FAKE_MIXER = """#!/bin/sh
echo "$0 $*" >> "{record}"
"""


class Controls(gallery_window.GalleryWindow):
    """Each test leaves every popover closed."""

    size = (1500, 950)
    settings = "fps=30\n"

    @classmethod
    def setUpClass(cls):
        # Ended after the desktop, also when starting fails half-way.
        cls.pulse = cls.enterClassContext(PulseServer())
        cls.shots = os.environ.get("QUELLTON_SHOTS")
        super().setUpClass()

    @classmethod
    def prepare(cls):
        cls.desktop.env.update(cls.pulse.env)
        cls.mixer_record = os.path.join(cls.desktop.folder, "mixer-started")
        bin_folder = os.path.join(cls.desktop.folder, "bin")
        os.makedirs(bin_folder)
        mixer = os.path.join(bin_folder, "pavucontrol")
        with open(mixer, "w") as script:
            script.write(FAKE_MIXER.format(record=cls.mixer_record))
        os.chmod(mixer, os.stat(mixer).st_mode | stat.S_IXUSR)
        cls.desktop.env["PATH"] = bin_folder + os.pathsep + cls.desktop.env["PATH"]

    def setUp(self):
        super().setUp()
        # A test that failed half-way may have left its popover open: it would take the next one's clicks.
        for _ in range(3):  # a picker's list, then its popover
            if not self.popovers():
                break
            self.desktop.key("Escape")
            time.sleep(0.5)
        self.assertFalse(self.popovers(), "a popover left open")

    # -- helpers ------------------------------------------------------------------------------

    def child(self, name, role="label"):
        """A shown part of the window's content outside the grid, once it is there."""
        return self.wait(lambda: self.shown(name, role), f"no {role} named {name!r}")[0]

    def button(self, name):
        return self.child(name, "push button")

    def find(self, name, role, within):
        return self.app.find(name, role=role, within=within)

    def choice(self, picker, text):
        """An entry of a picker's open list, which pops up over the window like a popover."""
        def lists():
            return [n for p in self.frame.children if p.role == "dialog" and p.showing
                    for n in p.children if n.role == "list" and n.name == picker]
        lists = self.wait(lists, f"the list of {picker!r} opens")
        return self.find(text, "list item", lists[0])

    def popovers(self):
        return [n for n in self.frame.children if n.role == "dialog" and n.showing]

    def popover(self, name):
        """The open popover of this name, once it has come to rest."""
        found = self.wait(lambda: [n for n in self.popovers() if n.name == name], f"the popover {name!r} opens")[0]
        self.wait(lambda: found.rect is not None and found.rect.width > 0, f"{name!r} has its place")
        resting = []

        def settled():  # it grows in: the same place twice in a row
            resting.append(found.rect)
            return len(resting) > 1 and resting[-1] == resting[-2]
        self.wait(settled, f"{name!r} comes to rest")
        return found

    def open_with_pointer(self, name):
        self.desktop.click(self.button(name))
        return self.popover(name)

    def close_popover(self, key=None):
        """With a key, or else with a click outside it."""
        if key:
            self.desktop.key(key)
        else:
            self.desktop.click(self.child("Alle Darstellungen"))
        self.wait(lambda: not self.popovers(), f"{key or 'an outside click'} closes the popover")

    def use(self, target, key, value):
        """A click on a part, or a key press when the target is a key's name; then until the setting is saved."""
        if isinstance(target, str):
            self.desktop.key(target)
        else:
            self.desktop.click(target)
        self.wait_stored(key, value)

    def tab_to(self, node, message):
        self.desktop.key("Tab")
        self.wait(lambda: "focused" in node.states, message)

    @staticmethod
    def checked(node):
        return "checked" in node.states

    def checked_segment(self, picker):
        marked = [n.name for n in picker.children if self.checked(n)]
        return marked[0] if len(marked) == 1 else marked

    def shot(self, name, node, margin=40, region=None):
        if not self.shots:
            return
        time.sleep(0.5)  # the last spring settles
        r = node.rect
        region = region or Rect(max(0, r.x - margin), max(0, r.y - margin), r.width + 2 * margin, r.height + 2 * margin)
        image = self.desktop.screenshot(region=region)
        os.makedirs(self.shots, exist_ok=True)
        shutil.copy(image.path, os.path.join(self.shots, name + ".png"))

    def shot_status(self, name, title):
        title = self.child(title)
        self.shot(name, title, region=Rect(title.rect.x - 50, title.rect.y - 30, 220, 125))

    # -- the tests ----------------------------------------------------------------------------

    def test_1_toolbar_buttons_tips_and_pause(self):
        buttons = [self.button(name) for name, _ in TOOLBAR]
        places = [b.rect for b in buttons]
        self.assertEqual(places, sorted(places, key=lambda r: r.x), "the order of the toolbar")
        self.assertEqual(len({r.y for r in places}), 1, "one row")
        self.assertEqual([b.description for b in buttons], [tip for _, tip in TOOLBAR])

        pause = buttons[3]
        icon = Rect(pause.rect.x + 6, pause.rect.y + 4, 24, pause.rect.height - 8)
        self.desktop.move(pause)
        time.sleep(1)  # the hover colour settles
        before = self.desktop.screenshot(region=icon)
        self.desktop.click(pause)
        resume = self.button("Fortsetzen")
        self.assertEqual(resume.description, "Hintergrund fortsetzen")
        # The symbol becomes another: pause's two bars give way to play's triangle.
        self.wait(lambda: self.desktop.screenshot(region=icon).difference(before) > 0.05, "the play symbol")
        self.desktop.click(resume)
        self.button("Pausieren")
        self.wait(lambda: self.desktop.screenshot(region=icon).difference(before) < 0.02, "the pause symbol again")

    def test_2_reaction_presets_and_sliders(self):
        popover = self.open_with_pointer("Reaktion")
        self.shot("reaction", popover)
        quick = self.find("Schnellwahl", "panel", popover)
        self.assertEqual([n.name for n in quick.children], ["Ruhig", "Normal", "Stark", "Extrem"])
        self.assertEqual(self.checked_segment(quick), "Normal")
        strength = self.find("Stärke", "slider", popover)
        motion = self.find("Bewegung", "slider", popover)
        self.assertEqual(motion.value, 0.15)
        labels = [n.name for n in popover.children if n.role == "label"]
        for text in ("Reaktion", "Ruhig", "Extrem", "Knackig", "Weich", SILENT_HINT):
            self.assertIn(text, labels)

        # The strength from elsewhere (the tray menu) moves the slider, and the picker follows it.
        for value, preset in (("1.5", "Stark"), ("0.6", "Ruhig"), ("2.2", "Extrem")):
            self.send(f"set reactivity {value}", lambda: self.checked_segment(quick) == preset,
                      f"{value} marks {preset}")
            self.wait(lambda: abs(strength.value - float(value)) < 1e-6, f"the slider glides to {value}")

        # Moved with the pointer: a press on the track puts the handle there.
        track = strength.rect
        for value, preset in ((1.5, "Stark"), (0.6, "Ruhig")):
            self.desktop.click((track.x + 10 + round((track.width - 20) * value / 2.5), track.y + track.height // 2))
            self.wait(lambda: abs(strength.value - value) < 0.05, f"the slider at {value} (is {strength.value})")
            self.wait(lambda: self.checked_segment(quick) == preset, f"{value} marks {preset}")
            self.wait_stored("reactivity", strength.value)

        # A preset sets its exact strength, and the slider glides there.
        ruhig = self.find("Ruhig", "radio button", quick)
        self.use(self.find("Extrem", "radio button", quick), "reactivity", "2.4")
        self.use(ruhig, "reactivity", "0.35")
        self.wait(lambda: strength.value == 0.35, "the slider at exactly 0.35")
        self.assertEqual(self.checked_segment(quick), "Ruhig")

        # By keyboard: the marked segment has the focus, the arrows choose, Tab reaches the sliders.
        self.use("Right", "reactivity", "1")
        self.assertEqual(self.checked_segment(quick), "Normal")
        self.assertNotIn("focused", ruhig.states)
        self.wait(lambda: strength.value == 1, "the slider glides to Normal")  # an arrow steps from where it is
        self.tab_to(strength, "Tab reaches the strength slider")
        self.desktop.key("Right")
        self.wait(lambda: abs(strength.value - 1.1) < 1e-6, "the arrow moves the slider")
        self.wait_stored("reactivity", 1.1)
        self.tab_to(motion, "and the motion slider")
        self.use("Left", "smoothing", 0.05)
        self.tab_to(self.find("Normal", "radio button", quick), "Tab stays inside the popover")

        # Escape closes it and gives the keyboard back to its button; Space opens it again.
        self.close_popover("Escape")
        self.wait(lambda: "focused" in self.button("Reaktion").states, "the button has the focus again")
        self.desktop.key("space")
        self.popover("Reaktion")
        self.close_popover("Escape")
        self.app.send("set reactivity 1")

    def status(self):
        """The audio status's title and whether its link is there."""
        labels = [n.name for n in self.content.children if n.role == "label" and n.showing]
        title = [t for t in labels if t in ("Hört mit", "Keine Musik")]
        link = [n for n in self.content.children if n.name == "Toneinstellungen öffnen" and n.showing]
        return title, bool(link)

    def test_3_level_meter_and_audio_status_follow_the_sound(self):
        self.assertEqual(self.status(), (["Keine Musik"], True))
        self.assertIn("Spiel etwas ab. Bleibt es still, prüfe die Ausgabe in den Toneinstellungen.",
                      [n.name for n in self.content.children])
        popover = self.open_with_pointer("Reaktion")
        bars = [self.find(name, "progress bar", popover) for name in BARS]

        def heights():
            return [bar.rect.height for bar in bars]
        # No capture yet: the silent frame, every bar at its least.
        self.wait(lambda: heights() == [4, 4, 4, 4], f"all bars at 4 in silence (are {heights()})")

        self.app.send("capture start")
        self.pulse.play(self.pulse.tone("tone.wav", seconds=60, frequencies=(80, 1000, 5000)))
        self.wait(lambda: self.status() == (["Hört mit"], False), "the status hears the tone", timeout=45)
        self.assertIn("Der Systemton steuert den Hintergrund.", [n.name for n in self.content.children])
        self.find(HEARING_HINT, "label", popover)
        self.wait(lambda: min(heights()[:3]) > 8, f"the bars rise with the tone (are {heights()})")
        seen = set()
        self.wait(lambda: seen.add(tuple(heights())) or len(seen) >= 4, "the bars move with the tone")
        self.shot("reaction-hearing", popover)
        self.shot_status("status-hearing", "Hört mit")

        # Shaped with the strength: at 0 every band sits at a quarter whatever plays, and no beat shows.
        self.send("set reactivity 0", lambda: heights()[3] == 4 and len(set(heights()[:3])) == 1,
                  f"flat bars at 0 (are {heights()})")
        self.assertTrue(8 <= heights()[0] <= 16, heights())
        self.app.send("set reactivity 1")

        self.pulse.stop_playing()
        self.wait(lambda: self.status() == (["Keine Musik"], True), "the status notices the silence", timeout=45)
        self.find(SILENT_HINT, "label", popover)
        self.wait(lambda: heights()[3] == 4, "no beat in silence")
        self.send("capture stop", lambda: heights() == [4, 4, 4, 4], f"back at 4 (are {heights()})")
        self.close_popover()
        self.assertEqual(self.status(), (["Keine Musik"], True))

    def test_4_mix_popover(self):
        popover = self.open_with_pointer("Mix")
        self.shot("mix", popover)
        enabled = self.find("Mix abspielen", "check box", popover)
        on_beat = self.find("Im Takt wechseln", "check box", popover)
        interval = self.find("Wechseln alle", "combo box", popover)
        count = self.find("Ausgewählt: 12 von 97", "label", popover)
        self.assertEqual((self.checked(enabled), self.checked(on_beat)), (False, True))
        self.assertEqual(interval.description, "1 Minute")

        self.use(enabled, "mixEnabled", "true")
        self.send("set mixEnabled false", lambda: not self.checked(enabled), "unchecked from the tray menu")
        self.send("set mixEnabled true", lambda: self.checked(enabled), "checked from outside")

        self.desktop.click(interval)
        five = self.choice("Wechseln alle", "5 Minuten")
        self.assertIn("selected", self.choice("Wechseln alle", "1 Minute").states)
        self.use(five, "mixInterval", "300")
        self.wait(lambda: interval.description == "5 Minuten", "the picker shows the choice")
        self.send("set mixInterval 15", lambda: interval.description == "15 Sekunden", "and a value set elsewhere")
        self.app.send("set mixInterval 60")
        self.assertEqual(len(self.popovers()), 1, "choosing from the list leaves the popover open")

        # Joining from elsewhere (a card's plus, the menu) counts at once.
        self.send("toggleMix sonar", lambda: count.name == "Ausgewählt: 13 von 97", f"13 (is {count.name!r})")
        self.desktop.click(self.find("Keine", "push button", popover))
        self.wait(lambda: count.name == "Ausgewählt: 0 von 97", "none")
        self.wait(lambda: self.stored("mix") in ("", "@Invalid()"), f"the empty Mix is saved ({self.stored('mix')!r})")
        # An empty Mix is no Mix: "Nächste" steps through the whole catalog.
        self.app.send("set currentID nation")
        self.use(self.find("Nächste", "push button", popover), "current", "halo")
        self.desktop.click(self.find("Alle", "push button", popover))
        self.wait(lambda: count.name == "Ausgewählt: 97 von 97", "all")
        self.wait(lambda: len((self.stored("mix") or "").split(",")) == 97, "all saved")
        self.desktop.click(self.find("Nächste", "push button", popover))
        self.wait(lambda: self.stored("current") not in ("halo", None), "another of the Mix")

        # By keyboard: the first toggle has the focus; Tab goes on to the picker and the second toggle.
        self.tab_to(enabled, "from Nächste, the last control, back round to the first toggle")
        self.use("space", "mixEnabled", "false")
        self.tab_to(interval, "Tab reaches the picker")
        self.tab_to(on_beat, "and the second toggle")
        self.use("space", "mixOnBeat", "false")
        self.assertFalse(self.checked(on_beat))
        self.close_popover()

    def test_5_palette_popover(self):
        popover = self.open_with_pointer("Farben")
        self.shot("palette", popover)
        grid = self.find("Farbwelt", "panel", popover)
        swatches = grid.children
        self.assertEqual(len(swatches), 15)
        self.assertEqual([s.name for s in swatches[:3]], ["Original", "Neonnacht", "Abendrot"])
        self.assertEqual(len({s.rect.x for s in swatches}), 3, "three columns")

        def selected():
            return [s.name for s in swatches if "selected" in s.states]
        self.assertEqual(selected(), ["Original"])
        self.desktop.click(self.find("Glut", "push button", grid))
        self.wait(lambda: selected() == ["Glut"], "Glut selected, Original not")
        self.wait_stored("palette", str([s.name for s in swatches].index("Glut") - 1))
        self.send("set paletteOverride -1", lambda: selected() == ["Original"], "Original when cleared elsewhere")
        self.send("set paletteOverride 13", lambda: selected() == [swatches[14].name], "the last palette set elsewhere")

        # By keyboard: Tab from swatch to swatch, Space chooses.
        self.use(swatches[0], "palette", "-1")
        self.tab_to(swatches[1], "Tab to the next swatch")
        self.use("space", "palette", "0")
        self.wait(lambda: selected() == ["Neonnacht"], "Space chooses it")
        self.close_popover("Escape")
        self.app.send("set paletteOverride -1")

    def test_6_settings_popover(self):
        # Opened by keyboard: the button from the previous popover keeps the focus after Escape.
        self.open_with_pointer("Einstellungen")
        self.close_popover("Escape")
        self.desktop.key("Return")
        popover = self.popover("Einstellungen")
        self.shot("settings", popover)
        quality = self.find("Qualität", "panel", popover)
        self.assertEqual([n.name for n in quality.children], ["Sparsam", "Ausgewogen", "Maximal"])
        self.assertEqual(self.checked_segment(quality), "Ausgewogen")
        rate = self.find("Bildrate", "combo box", popover)
        self.assertEqual(rate.description, "30 fps")
        self.find(FOOTER, "label", popover)

        self.use(self.find("Maximal", "radio button", quality), "quality", "Maximal")
        self.send("set quality Sparsam", lambda: self.checked_segment(quality) == "Sparsam", "Sparsam from elsewhere")
        self.use("Left", "quality", "Ausgewogen")  # the clicked segment kept the keyboard
        self.assertEqual(self.checked_segment(quality), "Ausgewogen")

        self.desktop.click(rate)
        self.use(self.choice("Bildrate", "120 fps"), "fps", "120")
        self.wait(lambda: rate.description == "120 fps", "the rate shows")
        # An older or hand-edited value still shows.
        self.send("set fps 144", lambda: rate.description == "144 fps", "an unlisted rate")
        self.app.send("set fps 30")

        screens = self.find("Auf allen Bildschirmen", "check box", popover)
        sync = self.find("Systemhintergrund angleichen", "check box", popover)
        login = self.find("Bei der Anmeldung starten", "check box", popover)
        self.assertEqual([self.checked(t) for t in (screens, sync, login)], [True, True, False])
        self.assertEqual(sync.description, SYNC_TIP)
        self.use(screens, "allScreens", "false")
        autostart = os.path.join(self.desktop.folder, "config", "autostart", "io.github.quellton.Quellton.desktop")
        self.desktop.click(login)
        self.wait(lambda: os.path.exists(autostart), "the login item is written")
        self.wait(lambda: self.checked(login), "checked")
        self.desktop.key("space")  # the clicked switch has the keyboard
        self.wait(lambda: not os.path.exists(autostart), "and removed by keyboard")

        # The long tip wraps and shows while the pointer rests on its row.
        row = sync.rect
        self.desktop.move((row.x - 120, row.y + row.height // 2))
        if self.shots:
            time.sleep(1.5)
            self.shot("settings-tip", popover, margin=80)
        self.close_popover()

    def test_7_datenschutz_opens_the_sound_settings(self):
        link = self.button("Toneinstellungen öffnen")
        self.shot_status("status-silent", "Keine Musik")
        self.assertFalse(os.path.exists(self.mixer_record))
        self.desktop.click(link)
        self.wait(lambda: os.path.exists(self.mixer_record), "the sound settings are started")
        with open(self.mixer_record) as record:
            started = record.read().split()
        self.assertEqual(len(started), 1, started)  # the mixer, without arguments
        self.assertTrue(started[0].endswith("pavucontrol"), started)


if __name__ == "__main__":
    gallery_window.main()
