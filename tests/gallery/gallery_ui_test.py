"""The gallery window in a private desktop with openbox, driven through the accessibility tree and
real pointer events, as a person (or a screen reader) would use it.

Run by ctest as: python3 gallery_ui_test.py HARNESS   (tests/support on PYTHONPATH)
"""

import os
import time

import gallery_window
from gallery_window import FIRST_TITLE

CATEGORIES = ["Ringe", "Spektrum", "Wellen", "3D", "4D", "Kosmos", "Psychedelisch", "Trance", "Spektakel"]
RUNNING = "Läuft als Hintergrund · klick hinein für eine Welle"
PREVIEWING = "Klicken, um es als Hintergrund zu setzen"
RENDER_THREAD = "Quellton.render"


class Gallery(gallery_window.GalleryWindow):
    """Each test leaves "Alle" selected."""

    size = (1700, 1050)
    settings = "fps=30\ncurrent=nation\nmix=halo, corona\n"

    @classmethod
    def launch(cls):
        super().launch()
        cls.parts = {}

    # -- helpers ------------------------------------------------------------------------------

    # The window's parts, found once and looked up again only when the program made them anew, so
    # that later searches stay small.
    def part(self, name, role):
        node = self.parts.get(name)
        if node is None or node.rect is None:
            node = self.parts[name] = self.app.find(name, role=role, within=self.content)
        return node

    @property
    def sidebar(self):
        return self.part("Seitenleiste", "list")

    @property
    def hero_panel(self):
        return self.part("Vorschau", "panel")

    @property
    def grid(self):
        return self.part("Darstellungen", "list")

    def badges(self):
        """Sidebar row -> its count, in the order shown, once every badge has told its number."""
        def read():
            rows = self.app.find_all(role="list item", within=self.sidebar)
            texts = [(n.name, n.children[0].name) for n in rows]
            # The list fills in as it is laid out for the first frames.
            complete = len(texts) == 2 + len(CATEGORIES)
            return texts if complete and all(t.isdigit() for _, t in texts) else None
        texts = self.wait(read, "sidebar badges with numbers")
        return {name: int(text) for name, text in texts}

    def select(self, text, title):
        self.desktop.click(self.app.find(text, role="list item", within=self.sidebar))
        self.wait_title(title)

    def pictures(self):
        """(place, name) of every card's picture built so far, row by row, left to right."""
        suffix = " als Hintergrund setzen"
        found = [(n.rect, n.name[: -len(suffix)]) for n in self.app.find_all(role="push button", within=self.grid)
                 if n.name.endswith(suffix)]
        return sorted(found, key=lambda card: (card[0].y, card[0].x))

    def cards(self):
        """The cards' names as a person reads them."""
        return [name for _, name in self.pictures()]

    def button(self, name, within=None):
        return self.app.find(name, role="push button", within=within or self.grid)

    def card(self, name):
        return self.button(f"{name} als Hintergrund setzen")

    def card_buttons(self, *wanted):
        """The cards' buttons by name, from one look at the grid, once all those wanted are built."""
        def look():
            buttons = {n.name: n for n in self.app.find_all(role="push button", within=self.grid)}
            return buttons if all(name in buttons for name in wanted) else None
        return self.wait(look, f"buttons {wanted}")

    def take_out_of_mix(self, name, title):
        """With the minus that a hovered card of the Mix shows."""
        self.desktop.move(self.card(name))
        self.desktop.click(self.button(f"{name} aus dem Mix nehmen"))
        self.wait_title(title)

    def hero(self):
        return [n.name for n in self.app.find_all(role="label", within=self.hero_panel)]

    def wait_hero(self, message, name, hint=None):
        """Until the hero shows, below its category, this name (and then this hint)."""
        self.wait(lambda: self.hero()[1:] == [name, hint] if hint else self.hero()[1:2] == [name], message)

    def rest_pointer(self):
        """Somewhere that hovers nothing: the sidebar below its rows."""
        sidebar = self.sidebar.rect
        self.desktop.move((sidebar.x + sidebar.width // 2, sidebar.y + sidebar.height - 80))

    def window_id(self):
        result = self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.app.process.pid)])
        ids = result.stdout.split()
        return ids[0] if ids else None

    def xdotool(self, *command):
        self.desktop.run(["xdotool", command[0], "--sync", self.window_id(), *map(str, command[1:])])

    def gsettings(self, key, value):
        result = self.desktop.run(["gsettings", "set", "org.gnome.desktop.interface", key, value])
        self.assertEqual(result.returncode, 0, result.stderr)

    # -- the tests ----------------------------------------------------------------------------

    def test_1_titles_and_counts(self):
        self.assertTrue(self.shown("Alle Darstellungen"))
        self.assertTrue(self.shown("97 Darstellungen"))
        badges = self.badges()
        self.assertEqual(list(badges), ["Alle", "Mein Mix"] + CATEGORIES)
        self.assertEqual((badges["Alle"], badges["Mein Mix"]), (97, 2))
        self.assertEqual(sum(badges[c] for c in CATEGORIES), 97)

        self.select("4D", "4D — 5 Darstellungen")
        self.wait(lambda: len(self.cards()) == 5, "five 4D cards")
        self.assertTrue(self.shown("5 Darstellungen"))
        self.select("Alle", FIRST_TITLE)

    def test_2_hover_previews_and_click_selects(self):
        self.rest_pointer()
        self.wait_hero("the running one in the hero", "Nation", RUNNING)
        self.assertEqual(self.hero()[0], "RINGE")

        buttons = self.card_buttons("Halo als Hintergrund setzen", "Perlenkranz als Hintergrund setzen",
                                    "Perlenkranz in den Mix legen", "Nation als Hintergrund setzen")
        perlen = buttons["Perlenkranz als Hintergrund setzen"]
        self.desktop.move(buttons["Halo als Hintergrund setzen"])
        self.wait_hero("the hovered one in the hero", "Halo", PREVIEWING)
        # A card not in the Mix shows its plus while hovered (an unseen button has no place on screen).
        plus = buttons["Perlenkranz in den Mix legen"]
        self.assertIsNone(plus.rect)
        self.desktop.move(perlen)
        self.wait(lambda: plus.rect is not None, "the plus fades in")
        self.wait_hero("Perlenkranz in the hero", "Perlenkranz")

        self.desktop.move(buttons["Nation als Hintergrund setzen"])  # the running one's own card
        self.wait_hero("no preview hint over the running card", "Nation", RUNNING)
        self.rest_pointer()
        self.wait_hero("back to the running one", "Nation", RUNNING)

        self.desktop.click(perlen)
        self.wait_hero("the clicked one runs", "Perlenkranz", RUNNING)
        self.wait_stored("current", "perlen")
        active = self.app.find("Aktiv", role="image", within=self.grid).rect
        picture = perlen.rect
        self.assertTrue(picture.x <= active.x < picture.x + picture.width and active.y > picture.y + picture.height)

        self.desktop.click(self.button("Vorherige", within=self.hero_panel))
        self.wait_hero("Vorherige steps back in the catalog", "Halo")
        self.desktop.click(self.button("Nächste", within=self.hero_panel))
        self.wait_hero("Nächste steps forward", "Perlenkranz")

    def test_3_the_hero_picture_is_live(self):
        self.rest_pointer()
        hero = self.hero_panel.rect
        first = self.desktop.screenshot(region=hero)
        self.assertGreater(first.mean(), 0.01, "the preview is black")
        self.wait(lambda: self.desktop.screenshot(region=hero).difference(first) > 0.004, "the live picture moves",
                  timeout=20)
        # A click in the picture sends a ripple and selects nothing.
        self.desktop.click((hero.x + hero.width * 3 // 4, hero.y + hero.height // 3))
        time.sleep(0.5)
        self.assertEqual(self.hero()[1:], ["Perlenkranz", RUNNING])
        self.assertGreater(self.app.cpu_seconds(RENDER_THREAD), 0)

    def test_4_an_empty_mix_and_cards_joining_it(self):
        self.select("Mein Mix", "Mein Mix — 2 Darstellungen")
        self.wait(lambda: self.cards() == ["Halo", "Korona"], "the Mix's cards")
        self.take_out_of_mix("Halo", "Mein Mix — 1 Darstellung")
        self.wait(lambda: self.hero()[1] != "Halo", "the card that went away is no longer previewed")
        self.assertEqual(self.badges()["Mein Mix"], 1)
        self.take_out_of_mix("Korona", "Mein Mix — 0 Darstellungen")
        self.wait(lambda: self.shown("Dein Mix ist leer"), "the empty Mix's panel")
        self.assertTrue(self.shown("Tippe auf das Plus einer Karte, um sie in deinen Mix zu legen."))
        self.assertEqual(self.cards(), [])
        self.assertEqual(self.badges()["Mein Mix"], 0)

        # Added elsewhere (the menu) while the Mix is shown: each card takes its catalog place.
        self.send("toggleMix sonar", lambda: self.cards() == ["Sonar"], "Sonar joins")
        self.wait(lambda: not self.shown("Dein Mix ist leer"), "the panel goes with the first card")
        self.send("toggleMix nation", lambda: self.cards() == ["Nation", "Sonar"], "Nation joins before Sonar")
        self.wait_title("Mein Mix — 2 Darstellungen")
        self.select("Alle", FIRST_TITLE)

    def test_5_grid_columns_follow_the_width(self):
        self.assertIsNotNone(self.window_id())

        def first_row():
            pictures = self.pictures()
            return [rect for rect, _ in pictures if rect.y == pictures[0][0].y]
        # With the sidebar at its ideal 214 and 20 of padding each side, as many columns of at least
        # 200 (and 18 between) as fit, none wider than 300.
        for width, height, columns in ((1600, 900, 6), (960, 700, 3), (1240, 860, 4)):
            self.xdotool("windowsize", width, height)
            self.wait(lambda: abs(self.frame.rect.width - width) <= 2, f"window {width} wide")
            self.wait(lambda: len(first_row()) == columns, f"{columns} columns at {width}")
            self.assertTrue(all(200 <= rect.width <= 300 for rect in first_row()), first_row())
        self.xdotool("windowsize", 700, 400)
        time.sleep(1)
        self.assertGreaterEqual(self.frame.rect.width, 960)
        self.assertGreaterEqual(self.frame.rect.height, 660)
        self.xdotool("windowsize", 1240, 860)

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
        self.wait_hero("hovered", "Sonar")
        time.sleep(0.5)
        self.assertEqual(card.rect.x, resting)
        self.gsettings("enable-animations", "true")
        self.rest_pointer()

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

        def show(message):
            self.app.send("show")
            self.wait(lambda: self.window_id() is not None, message)
        shown = render_cpu()
        self.desktop.run(["wmctrl", "-c", self.frame.name])
        self.wait(lambda: self.window_id() is None, "the window goes away")
        self.assertIsNone(self.app.process.poll(), "closing the gallery must not end the program")
        hidden = render_cpu()
        self.assertLess(hidden, max(0.25 * shown, 0.05), f"shown {shown:.2f} s, hidden {hidden:.2f} s")

        show("shown again")
        self.wait_title(FIRST_TITLE)  # everything selected again
        self.wait(lambda: render_cpu(1.5) > 0, "the preview draws again")

        self.xdotool("windowminimize")
        time.sleep(0.5)
        self.assertLess(render_cpu(), max(0.25 * shown, 0.05), "a minimised gallery draws nothing")
        show("restored")

    def test_9_place_and_size_are_remembered(self):
        self.xdotool("windowsize", 1100, 760)
        self.xdotool("windowmove", 90, 60)
        self.wait(lambda: self.frame.rect.width == 1100, "resized")
        placed = self.frame.rect
        time.sleep(1.0)  # the place is written shortly after the last change
        self.app.send("quit")
        self.assertEqual(self.app.process.wait(timeout=30), 0)

        type(self).launch()
        again = self.frame.rect
        self.assertEqual((again.width, again.height), (placed.width, placed.height))
        self.assertLessEqual(abs(again.x - placed.x) + abs(again.y - placed.y), 4)


if __name__ == "__main__":
    gallery_window.main()
