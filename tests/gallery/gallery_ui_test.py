"""The gallery window in a private desktop with openbox, driven through the accessibility tree and
real pointer events, as a person (or a screen reader) would use it.

Run by ctest as: python3 gallery_ui_test.py HARNESS   (tests/support on PYTHONPATH)
"""

import os
import sys
import time
import unittest

import settings_file
from desktop_session import DesktopSession

HARNESS = None
CATEGORIES = ["Ringe", "Spektrum", "Wellen", "3D", "4D", "Kosmos", "Psychedelisch", "Trance", "Spektakel"]
RUNNING = "Läuft als Hintergrund · klick hinein für eine Welle"
PREVIEWING = "Klicken, um es als Hintergrund zu setzen"
RENDER_THREAD = "Quellton.render"


class Gallery(unittest.TestCase):
    """One gallery for the whole class: the tests run in order and each leaves "Alle" selected."""

    @classmethod
    def setUpClass(cls):
        cls.desktop = DesktopSession(size=(1700, 1050)).__enter__()
        cls.config = os.path.join(cls.desktop.folder, "config", "Quellton", "Quellton.conf")
        os.makedirs(os.path.dirname(cls.config))
        with open(cls.config, "w") as config:
            config.write("[General]\nfps=30\ncurrent=nation\nmix=halo, corona\n")
        cls.start()

    @classmethod
    def start(cls):
        cls.app = cls.desktop.launch([HARNESS], "Quellton", stdin=True,
                                     log=os.path.join(cls.desktop.folder, "harness.log"))
        cls.frame = cls.app.find(role="frame", timeout=60)
        cls.desktop.wait(lambda: cls.frame.name == "Alle Darstellungen — 97 Darstellungen", 30, "first title")
        cls.parts = {}

    @classmethod
    def tearDownClass(cls):
        cls.desktop.__exit__(None, None, None)

    def setUp(self):
        self.started = time.monotonic()

    def tearDown(self):
        print(f"  {self.id().rsplit('.', 1)[1]} took {time.monotonic() - self.started:.1f} s", file=sys.stderr)

    # -- helpers ------------------------------------------------------------------------------

    # The window's parts, found once and looked up again only when the program made them anew, so
    # that later searches stay small.
    def part(self, name, role):
        node = self.parts.get(name)
        if node is None or node.rect is None:
            node = self.parts[name] = self.app.find(name, role=role, within=self.content)
        return node

    @property
    def content(self):
        return self.frame.children[0]

    @property
    def sidebar(self):
        return self.part("Seitenleiste", "list")

    @property
    def hero_panel(self):
        return self.part("Vorschau", "panel")

    @property
    def grid(self):
        return self.part("Darstellungen", "list")

    def wait(self, predicate, message, timeout=30):
        return self.desktop.wait(predicate, timeout, message)

    def row(self, text):
        return self.app.find(text, role="list item", within=self.sidebar)

    def badges(self):
        """Sidebar row -> its count, in the order shown, once every badge has told its number."""
        def read():
            rows = self.app.find_all(role="list item", within=self.sidebar)
            texts = [(n.name, n.children[0].name) for n in rows]
            return texts if texts and all(t.isdigit() for _, t in texts) else None
        texts = self.wait(read, "sidebar badges with numbers")
        return {name: int(text) for name, text in texts}

    def badge(self, text):
        return self.badges()[text]

    def select(self, text, title):
        self.desktop.click(self.row(text))
        self.wait(lambda: self.frame.name == title, f"title {title!r}")

    def pictures(self):
        """(place, name) of every card's picture built so far, row by row, left to right."""
        suffix = " als Hintergrund setzen"
        found = [(n.rect, n.name[: -len(suffix)]) for n in self.app.find_all(role="push button", within=self.grid)
                 if n.name.endswith(suffix)]
        return sorted(found, key=lambda card: (card[0].y, card[0].x))

    def cards(self):
        """The cards' names as a person reads them."""
        return [name for _, name in self.pictures()]

    def card(self, name):
        return self.app.find(f"{name} als Hintergrund setzen", role="push button", within=self.grid)

    def card_buttons(self, *wanted):
        """The cards' buttons by name, from one look at the grid, once all those wanted are built."""
        def look():
            buttons = {n.name: n for n in self.app.find_all(role="push button", within=self.grid)}
            return buttons if all(name in buttons for name in wanted) else None
        return self.wait(look, f"buttons {wanted}")

    def mix_button(self, name):
        return self.app.find(name, role="push button", within=self.grid)

    def labels(self, text):
        """Labels with this text directly in the window's content (header, empty panel) that are shown."""
        return [n for n in self.content.children if n.role == "label" and n.name == text and n.showing]

    def hero(self):
        return [n.name for n in self.app.find_all(role="label", within=self.hero_panel)]

    def rest_pointer(self):
        """Somewhere that hovers nothing: the sidebar below its rows."""
        sidebar = self.sidebar.rect
        self.desktop.move((sidebar.x + sidebar.width // 2, sidebar.y + sidebar.height - 80))

    def window_id(self):
        result = self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.app.process.pid)])
        ids = result.stdout.split()
        return ids[0] if ids else None

    def stored(self, key):
        return settings_file.stored(self.config, key)

    # -- the tests ----------------------------------------------------------------------------

    def test_1_titles_and_counts(self):
        self.assertTrue(self.labels("Alle Darstellungen"))
        self.assertTrue(self.labels("97 Darstellungen"))
        badges = self.badges()
        self.assertEqual(list(badges), ["Alle", "Mein Mix"] + CATEGORIES)
        self.assertEqual(badges["Alle"], 97)
        self.assertEqual(badges["Mein Mix"], 2)
        self.assertEqual(sum(badges[c] for c in CATEGORIES), 97)

        self.select("4D", "4D — 5 Darstellungen")
        self.wait(lambda: len(self.cards()) == 5, "five 4D cards")
        self.assertTrue(self.labels("5 Darstellungen"))
        self.select("Alle", "Alle Darstellungen — 97 Darstellungen")

    def test_2_hover_previews_and_click_selects(self):
        self.rest_pointer()
        self.wait(lambda: self.hero()[1:] == ["Nation", RUNNING], "the running one in the hero")
        self.assertEqual(self.hero()[0], "RINGE")

        buttons = self.card_buttons("Halo als Hintergrund setzen", "Perlenkranz als Hintergrund setzen",
                                    "Perlenkranz in den Mix legen", "Nation als Hintergrund setzen")
        self.desktop.move(buttons["Halo als Hintergrund setzen"])
        self.wait(lambda: self.hero()[1:] == ["Halo", PREVIEWING], "the hovered one in the hero")
        # A card not in the Mix shows its plus while hovered (an unseen button has no place on screen).
        plus = buttons["Perlenkranz in den Mix legen"]
        self.assertIsNone(plus.rect)
        self.desktop.move(buttons["Perlenkranz als Hintergrund setzen"])
        self.wait(lambda: plus.rect is not None, "the plus fades in")
        self.wait(lambda: self.hero()[1] == "Perlenkranz", "Perlenkranz in the hero")

        self.desktop.move(buttons["Nation als Hintergrund setzen"])  # the running one's own card
        self.wait(lambda: self.hero()[1:] == ["Nation", RUNNING], "no preview hint over the running card")
        self.rest_pointer()
        self.wait(lambda: self.hero()[1:] == ["Nation", RUNNING], "back to the running one")

        self.desktop.click(buttons["Perlenkranz als Hintergrund setzen"])
        self.wait(lambda: self.hero()[1:] == ["Perlenkranz", RUNNING], "the clicked one runs")
        self.wait(lambda: self.stored("current") == "perlen", "the choice is saved")
        active = self.app.find("Aktiv", role="image", within=self.grid).rect
        picture = buttons["Perlenkranz als Hintergrund setzen"].rect
        self.assertTrue(picture.x <= active.x < picture.x + picture.width and active.y > picture.y + picture.height)

        self.desktop.click(self.app.find("Vorherige", role="push button", within=self.hero_panel))
        self.wait(lambda: self.hero()[1] == "Halo", "Vorherige steps back in the catalog")
        self.desktop.click(self.app.find("Nächste", role="push button", within=self.hero_panel))
        self.wait(lambda: self.hero()[1] == "Perlenkranz", "Nächste steps forward")

    def test_3_the_hero_picture_is_live(self):
        self.rest_pointer()
        hero = self.hero_panel.rect
        first = self.desktop.screenshot(region=hero)
        self.assertGreater(first.mean(), 0.01, "the preview is black")

        def moved():
            return self.desktop.screenshot(region=hero).difference(first) > 0.004
        self.wait(moved, "the live picture did not move", timeout=20)
        # A click in the picture sends a ripple and selects nothing.
        self.desktop.click((hero.x + hero.width * 3 // 4, hero.y + hero.height // 3))
        time.sleep(0.5)
        self.assertEqual(self.hero()[1:], ["Perlenkranz", RUNNING])
        self.assertGreater(self.app.cpu_seconds(RENDER_THREAD), 0)

    def test_4_an_empty_mix_and_cards_joining_it(self):
        self.select("Mein Mix", "Mein Mix — 2 Darstellungen")
        self.wait(lambda: self.cards() == ["Halo", "Korona"], "the Mix's cards")

        self.desktop.move(self.card("Halo"))
        self.desktop.click(self.mix_button("Halo aus dem Mix nehmen"))
        self.wait(lambda: self.frame.name == "Mein Mix — 1 Darstellung", "one left")
        self.wait(lambda: self.hero()[1] != "Halo", "the card that went away is no longer previewed")
        self.assertEqual(self.badge("Mein Mix"), 1)

        self.desktop.move(self.card("Korona"))
        self.desktop.click(self.mix_button("Korona aus dem Mix nehmen"))
        self.wait(lambda: self.frame.name == "Mein Mix — 0 Darstellungen", "none left")
        self.wait(lambda: self.labels("Dein Mix ist leer"), "the empty Mix's panel")
        self.assertTrue(self.labels("Tippe auf das Plus einer Karte, um sie in deinen Mix zu legen."))
        self.assertEqual(self.cards(), [])
        self.assertEqual(self.badge("Mein Mix"), 0)

        # Added elsewhere (the menu) while the Mix is shown: each card takes its catalog place.
        self.app.send("toggleMix sonar")
        self.wait(lambda: self.cards() == ["Sonar"], "Sonar joins")
        self.wait(lambda: not self.labels("Dein Mix ist leer"), "the panel goes with the first card")
        self.app.send("toggleMix nation")
        self.wait(lambda: self.cards() == ["Nation", "Sonar"], "Nation joins before Sonar")
        self.wait(lambda: self.frame.name == "Mein Mix — 2 Darstellungen", "two again")
        self.select("Alle", "Alle Darstellungen — 97 Darstellungen")

    def test_5_grid_columns_follow_the_width(self):
        window = self.window_id()
        self.assertIsNotNone(window)

        def first_row():
            pictures = self.pictures()
            return [rect for rect, _ in pictures if rect.y == pictures[0][0].y]
        # With the sidebar at its ideal 214 and 20 of padding each side, as many columns of at least
        # 200 (and 18 between) as fit, none wider than 300.
        for width, height, columns in ((1600, 900, 6), (960, 700, 3), (1240, 860, 4)):
            self.desktop.run(["xdotool", "windowsize", "--sync", window, str(width), str(height)])
            self.wait(lambda: abs(self.frame.rect.width - width) <= 2, f"window {width} wide")
            self.wait(lambda: len(first_row()) == columns, f"{columns} columns at {width}")
            self.assertTrue(all(200 <= rect.width <= 300 for rect in first_row()), first_row())
        self.desktop.run(["xdotool", "windowsize", "--sync", window, "700", "400"])
        time.sleep(1)
        self.assertGreaterEqual(self.frame.rect.width, 960)
        self.assertGreaterEqual(self.frame.rect.height, 660)
        self.desktop.run(["xdotool", "windowsize", "--sync", window, "1240", "860"])

    def test_6_light_dark_and_motion_follow_the_desktop(self):
        sidebar = self.sidebar.rect
        def brightness():
            return self.desktop.screenshot(region=sidebar).mean()
        self.assertGreater(brightness(), 0.6)
        self.gsettings("color-scheme", "prefer-dark")
        self.wait(lambda: brightness() < 0.3, "the gallery turns dark")
        self.gsettings("color-scheme", "default")
        self.wait(lambda: brightness() > 0.6, "and light again")

        # A hovered card grows by 2.5 % about its centre, unless the desktop has its animations switched
        # off. (The tree reports a grown item's corner where it moved to, with its unscaled size.)
        self.rest_pointer()
        card = self.card("Sonar")
        resting = card.rect.x
        self.desktop.move(card)
        self.wait(lambda: resting - card.rect.x >= 2, "the hovered card grows")
        self.rest_pointer()
        self.wait(lambda: card.rect.x == resting, "and shrinks back")
        self.gsettings("enable-animations", "false")
        time.sleep(1)
        self.desktop.move(card)
        self.wait(lambda: self.hero()[1] == "Sonar", "hovered")
        time.sleep(0.5)
        self.assertEqual(card.rect.x, resting)
        self.gsettings("enable-animations", "true")
        self.rest_pointer()

    def gsettings(self, key, value):
        result = self.desktop.run(["gsettings", "set", "org.gnome.desktop.interface", key, value])
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_7_thumbnails_fade_in_over_their_placeholders(self):
        # Rendering all stills takes a while on a software rasteriser; the first cards come early.
        # The light placeholder is nearly white; the stills of the visualizations are dark.
        self.rest_pointer()
        picture = self.card("Nation").rect
        side = type(picture)(picture.x + picture.width // 10, picture.y + picture.height // 5,
                             picture.width // 4, picture.height * 3 // 5)  # away from the spinner
        self.wait(lambda: self.desktop.screenshot(region=side).mean() < 0.5, "Nation's still", timeout=240)
        cache = os.path.join(self.desktop.folder, "cache", "io.github.quellton.Quellton", "Vorschau")
        self.assertTrue(any(name.startswith("nation-") and name.endswith(".png") for name in os.listdir(cache)))

    def test_8_closing_hides_and_the_preview_stops(self):
        self.select("Mein Mix", "Mein Mix — 2 Darstellungen")

        def render_cpu(seconds=3.0):
            before = self.app.cpu_seconds(RENDER_THREAD)
            time.sleep(seconds)
            return self.app.cpu_seconds(RENDER_THREAD) - before
        shown = render_cpu()
        self.desktop.run(["wmctrl", "-c", self.frame.name])
        self.wait(lambda: self.window_id() is None, "the window goes away")
        self.assertIsNone(self.app.process.poll(), "closing the gallery must not end the program")
        hidden = render_cpu()
        self.assertLess(hidden, max(0.25 * shown, 0.05), f"shown {shown:.2f} s, hidden {hidden:.2f} s")

        self.app.send("show")
        self.wait(lambda: self.window_id() is not None, "shown again")
        self.wait(lambda: self.frame.name == "Alle Darstellungen — 97 Darstellungen", "everything selected again")
        self.wait(lambda: render_cpu(1.5) > 0, "the preview draws again")

        self.desktop.run(["xdotool", "windowminimize", "--sync", self.window_id()])
        time.sleep(0.5)
        self.assertLess(render_cpu(), max(0.25 * shown, 0.05), "a minimised gallery draws nothing")
        self.app.send("show")
        self.wait(lambda: self.window_id() is not None, "restored")

    def test_9_place_and_size_are_remembered(self):
        window = self.window_id()
        self.desktop.run(["xdotool", "windowsize", "--sync", window, "1100", "760"])
        self.desktop.run(["xdotool", "windowmove", "--sync", window, "90", "60"])
        self.wait(lambda: self.frame.rect.width == 1100, "resized")
        placed = self.frame.rect
        time.sleep(1.0)  # the place is written shortly after the last change
        self.app.send("quit")
        self.assertEqual(self.app.process.wait(timeout=30), 0)

        type(self).start()
        again = self.frame.rect
        self.assertEqual((again.width, again.height), (placed.width, placed.height))
        self.assertLessEqual(abs(again.x - placed.x) + abs(again.y - placed.y), 4)


if __name__ == "__main__":
    HARNESS = sys.argv.pop(1)
    unittest.main(verbosity=2)
