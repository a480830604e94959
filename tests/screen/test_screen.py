"""What a person sees: cadhost in its window mode on an X server of its own (Xvfb), the command typed
into its command line, the dialogs driven by real key and mouse events (xdotool), and screenshots
checked pixel by pixel. Skips (77) only when Xvfb, xdotool or ImageMagick is missing or Xvfb
cannot start."""

import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import screenkit as kit  # noqa: E402

SOURCE = os.environ.get("VARDESK_SOURCE_DIR", os.path.join(os.path.dirname(__file__), "..", ".."))
DRAWING = os.path.join(SOURCE, "data", "samples", "Lageplan.dxf")
CHATTER = ("QStandardPaths", "propagateSizeHints", "qt.qpa")


def is_main(window):
    return window["class"] == "cDlgVarDesk"


def tool(window, text):
    return next(c for c in window["controls"] if c["class"] == "QToolButton" and c.get("text") == text)


class Probe:
    """Pixel probes of one screenshot, in the window's logical coordinates times its ratio."""

    def __init__(self, image, ratio):
        self.image, self.ratio = image, ratio

    def at(self, x, y):
        return self.image.at(int(x * self.ratio), int(y * self.ratio))

    def row_colours(self, x0, x1, y):
        return {self.image.at(x, int(y * self.ratio)) for x in range(int(x0 * self.ratio), int(x1 * self.ratio))}

    def last_ink(self, rect):
        """The rightmost column of rect (device pixels) with a dark pixel, or None."""
        x, y, w, h = kit.scaled(rect, self.ratio)
        for column in range(x + w - 1, x - 1, -1):
            if any(kit.dark(self.image.at(column, row)) for row in range(y + 2, y + h - 2)):
                return column
        return None


class ScreenSession(unittest.TestCase):
    """One cadhost for the tests of a class, so that the X server and the host start once."""

    scale = None
    screen_size = "1280x1024x24"

    @classmethod
    def setUpClass(cls):
        # Class cleanups run even when this set-up fails half-way, unlike tearDownClass.
        cls.x = kit.Xvfb(cls.screen_size)
        cls.addClassCleanup(cls.x.stop)
        env = {"QT_SCALE_FACTOR": str(cls.scale)} if cls.scale else {}
        cls.host = kit.Cadhost(cls.x, args=[DRAWING], env=env)
        cls.addClassCleanup(cls.host.stop)
        cls.host.window("cadhost")
        cls.host.settle(0.5)
        cls.host.command("KOVA_VARDESK")
        cls.host.wait_window(is_main, "of VarDesk")
        cls.host.settle()

    def main(self):
        return self.host.wait_window(is_main, "of VarDesk")

    def probe(self, window, keep=None):
        return Probe(self.host.shot(window, keep), window.get("ratio", 1))

    def press(self, window, *keys):
        """Keys into the window; the main dialog as it is afterwards."""
        self.host.key(window, *keys)
        self.host.settle()
        return self.main()

    def click_tool(self, window, text):
        """A click on a tool button; the main dialog as it is afterwards."""
        self.host.click_control(window, tool(window, text))
        self.host.settle()
        return self.main()

    def wait_class(self, cls, what):
        return self.host.wait_window(lambda w: w["class"] == cls, what)

    def opened(self, title, keep=None):
        """The dialog that a click opened, closed again after the test, once it has settled (its shot kept)."""
        self.addCleanup(self.close_top, self.host.window(title))
        self.host.settle()
        window = self.host.window(title)
        if keep:
            self.probe(window, keep)
        return window

    def file_dialog(self, window, text, path, owned=False):
        """The file dialog of a tool button (owned by the window if owned), a path typed and Return pressed."""
        self.host.click_control(window, tool(window, text))
        files = self.wait_class("QFileDialog", "file dialog")
        if owned:
            self.assertEqual(files["owner"], window["title"])
        self.host.settle(0.6)
        self.host.type(files, path)
        self.host.key(files, "Return")
        self.host.wait_gone(files["title"])

    def close_top(self, window):
        """Escape until the window is gone (the search dialog takes two)."""
        for _ in range(3):
            if not any(w["title"] == window["title"] for w in self.host.report()):
                return
            self.host.key(window, "Escape")
            self.host.settle(0.5)
        self.host.wait_gone(window["title"])

    def assertButtonsFit(self, window):
        """Every push button lies inside the window, no two overlap, and each caption fits."""
        _, _, width, height = window["geometry"]
        buttons = [c for c in window["controls"] if c["class"] == "QPushButton"]
        self.assertTrue(buttons)
        for b in buttons:
            x, y, w, h = b["rect"]
            with self.subTest(window=window["title"], button=b.get("text")):
                self.assertGreaterEqual(x, 0)
                self.assertLessEqual(x + w, width)
                self.assertLessEqual(y + h, height)
                self.assertLessEqual(b.get("advance", 0) + 8, w, "the caption needs more than the button")
        for i, a in enumerate(buttons):
            for b in buttons[i + 1:]:
                ax, ay, aw, ah = a["rect"]
                bx, by, bw, bh = b["rect"]
                self.assertFalse(ax < bx + bw and bx < ax + aw and ay < by + bh and by < ay + ah,
                                 f"{a.get('text')} and {b.get('text')} overlap")


class MainDialogOnScreen(ScreenSession):
    """The list, its rows and the status bar as they are painted (each step builds on the one before)."""

    def list_view(self):
        """The main dialog, its list's report and the rectangle of the list's viewport."""
        window = self.main()
        return window, kit.control(window, "9002", "VarListView"), kit.control(window, "9002/qt_scrollarea_viewport")["rect"]

    def test_1a_list_starts_without_current_row_selection_or_focus_band(self):
        window, lst, (vx, vy, vw, _) = self.list_view()
        probe = self.probe(window, "main-start")
        rows = lst["rows"]
        highlight = kit.colour(lst["highlight"])
        self.assertEqual(lst["current"], -1)
        # Nothing in the list has the highlight colour: no selection and no focus band.
        for y in range(vy, vy + rows[2][1] + rows[2][3]):
            self.assertNotIn(highlight, probe.row_colours(vx, vx + vw - 1, y), f"highlight at y={y}")

    def test_1b_rows_hold_their_whole_image_and_the_grid_lines(self):
        window, lst, (vx, vy, _, _) = self.list_view()
        probe = self.probe(window, "main-rows")
        rows = lst["rows"]
        base = kit.colour(lst["base"])
        grid = kit.colour(lst["button"])
        _, top0, _, height0 = rows[0]
        self.assertGreaterEqual(height0, 17, "a row holds its 16-pixel image and the grid line")
        # The letter image of the header "A" keeps its dark bottom edge (its line 14 of 16): the
        # next row does not paint over it.
        image_bottom = probe.row_colours(vx + 5, vx + 5 + 16, vy + top0 + 14)
        self.assertTrue([c for c in image_bottom if kit.dark(c)], "the image's bottom edge is painted over")
        # The grid: a line below the row, and one at the left edge of column 1.
        col1 = rows[0][2]
        self.assertEqual(probe.row_colours(vx + col1 + 20, vx + col1 + 60, vy + top0 + height0 - 1), {grid})
        self.assertEqual(probe.at(vx + col1 - 1, vy + top0 + 5), grid)
        self.assertEqual(probe.at(vx + col1 + 30, vy + top0 + 5), base)

    def test_1c_first_down_selects_the_first_row(self):
        window, lst, (vx, vy, _, _) = self.list_view()
        rows = lst["rows"]
        highlight = kit.colour(lst["highlight"])
        col1, top0 = rows[0][2], rows[0][1]
        self.press(window, "Down")
        probe = self.probe(window, "main-down")
        self.assertEqual(probe.at(vx + col1 + 30, vy + top0 + 5), highlight)
        self.assertNotEqual(probe.at(vx + col1 + 30, vy + rows[1][1] + 5), highlight)

    def test_2_status_panes_hold_their_texts(self):
        window = self.main()
        # Row 1 is a read-only global variable, row 4 a changeable drawing variable: between them
        # panes 1 and 2 show their longest texts.
        window = self.press(window, "Down")
        panes = kit.controls(window, "59393/QLabel")
        self.assertEqual(len(panes), 3)
        self.assertEqual(panes[1].get("text"), "schreibgeschützt")
        self.assertPaneHolds(self.probe(window, "main-status-1"), panes[1])
        window = self.press(window, "Down", "Down", "Down")
        panes = kit.controls(window, "59393/QLabel")
        self.assertEqual(panes[2].get("text"), "zeichnungsabhängig")
        self.assertPaneHolds(self.probe(window, "main-status-2"), panes[2])

    def assertPaneHolds(self, probe, pane):
        x, _, w, _ = kit.scaled(pane["rect"], probe.ratio)
        last = probe.last_ink(pane["rect"])
        self.assertIsNotNone(last, f"pane {pane['text']!r} shows no text")
        # The text ends before the pane's frame with room to spare; a cut text runs up to it.
        self.assertLessEqual(last, x + w - 4, f"pane {pane['text']!r} cuts its text")

    def test_3_search_dialog_fits(self):
        window = self.main()
        self.host.click_control(window, tool(window, "Suchen"))
        search = self.opened("Suchen", "search")
        self.assertButtonsFit(search)
        boxes = [c for c in search["controls"] if c["class"] == "QGroupBox"]
        hits = [c for c in search["controls"] if c.get("text") in ("zurück", "weiter", "alle Treffer")]
        for hit in hits:
            self.assertLessEqual(boxes[0]["rect"][0] + boxes[0]["rect"][2], hit["rect"][0], "group box under a button")

    def test_4_selection_dialog_fits(self):
        window = self.main()
        self.host.click_control(window, tool(window, "Nur Benutzerdefinierte"))  # Add works there
        self.host.settle()
        self.host.click_control(window, tool(window, "Hinzufügen"))
        select = self.opened("Auswahl", "selection")
        self.assertButtonsFit(select)
        help_button = next(c for c in select["controls"] if c.get("text") == "Hilfe")
        self.assertEqual(help_button["rect"][0] + help_button["rect"][2], select["geometry"][2] - 10,
                         "the wide arrangement: Help at the right edge")

    def test_5_configuration_fields_start_at_the_widest_label(self):
        window = self.main()
        bar = kit.control(window, "QMenuBar")
        entry = next(e for e in bar["entries"] if e["text"].replace("&", "") == "Optionen")
        x, y, w, h = entry["rect"]
        self.host.click(window, bar["rect"][0] + x + w // 2, bar["rect"][1] + y + h // 2)
        menu = self.host.wait_window(lambda w: w["class"] == "QMenu", "menu Optionen")
        item = next(e for e in menu["controls"][0]["entries"] if e["text"].replace("&", "") == "Konfiguration")
        ix, iy, iw, ih = item["rect"]
        self.host.click(menu, ix + iw // 2, iy + ih // 2)
        config = self.opened("Konfiguration")
        labels = [c for c in config["controls"] if c["class"] == "QLabel" and c.get("text")]
        fields = [c for c in config["controls"] if c["class"] in ("QLineEdit", "CEditEx")]
        self.assertEqual(len(labels), 2)
        self.assertEqual(len(fields), 2)
        probe = self.probe(config, "configuration")
        widest = max(probe.last_ink(label["rect"]) for label in labels)
        for field in fields:
            left = kit.scaled(field["rect"], probe.ratio)[0]
            self.assertGreater(left, widest, "a field covers its label")
            self.assertLessEqual(left - widest, 3 * probe.ratio, "a field stands apart from the labels")
        self.assertEqual(len({f["rect"][0] for f in fields}), 1)
        self.assertButtonsFit(config)

    def test_6a_box_is_centred_on_the_dialog_that_asks(self):
        # Save with an empty user list: a box.
        window = self.click_tool(self.main(), "Nur Benutzerdefinierte")
        self.host.click_control(window, tool(window, "Speichern"))
        self.wait_class("QMessageBox", "box")
        self.host.settle()
        box = self.wait_class("QMessageBox", "box")
        self.assertEqual(box["owner"], window["title"])
        bx, by, bw, bh = box["geometry"]
        wx, wy, ww, wh = window["geometry"]
        self.assertLessEqual(abs((bx + bw / 2) - (wx + ww / 2)), 1)
        self.assertLessEqual(abs((by + bh / 2) - (wy + wh / 2)), 1, f"box {box['geometry']} over {window['geometry']}")
        self.host.key(box, "Return")
        self.host.wait_gone(box["title"])

    def test_6b_save_as_over_a_file_asks_nothing_and_replaces_it(self):
        # The selected rows; the file dialog belongs to the VarDesk dialog.
        window = self.click_tool(self.main(), "Alle aktuellen")
        self.host.key(window, "Down", "Down")
        target = os.path.join(self.host.work, "liste.var")
        with open(target, "w", encoding="utf-8") as f:
            f.write("OLD\n")
        self.file_dialog(window, "Speichern als", target, owned=True)
        self.host.settle()
        self.assertFalse([w for w in self.host.report() if w["class"] == "QMessageBox"],
                         "a question after the file dialog")
        with open(target, encoding="utf-8") as f:
            written = f.read()
        self.assertNotIn("OLD", written)
        self.assertTrue(written.strip(), "the selected rows were not written")

    def test_6c_open_without_the_extension_finds_the_list_with_it(self):
        with open(os.path.join(self.host.work, "andere.var"), "w", encoding="utf-8") as f:
            f.write("LUPREC                   #2\n")
        self.file_dialog(self.main(), "Öffnen", os.path.join(self.host.work, "andere"))
        self.host.wait_window(lambda w: is_main(w) and "andere.var" in w["title"], "with the opened list")

    def test_7_no_toolkit_chatter(self):
        for word in CHATTER:
            self.assertNotIn(word, self.host.output())


class MainDialogAtScaleTwo(ScreenSession):
    """QT_SCALE_FACTOR=2: the same layout at twice the pixels, sharp images, fitting texts."""

    scale = 2
    screen_size = "2400x1800x24"

    def test_1_default_size_is_in_logical_pixels_and_the_screen_has_twice_as_many(self):
        window = self.main()
        self.assertEqual(window["ratio"], 2)
        self.assertEqual(window["geometry"][2:], [450, 320])
        image = self.probe(window).image
        self.assertEqual((image.width, image.height), (900, 640))

    def test_2_row_images_are_drawn_sharp(self):
        window = self.main()
        vx, vy, _, _ = kit.control(window, "9002/qt_scrollarea_viewport")["rect"]
        _, top0, _, height0 = kit.control(window, "9002", "VarListView")["rows"][0]
        self.assertGreaterEqual(height0, 17)
        probe = self.probe(window, "scaled-main")
        # A sharp image is drawn from a 32-pixel picture: one blown up from 16 pixels repeats each
        # colour in 2 x 2 blocks. (The image's last line is empty and lies against the grid line.)
        x0, y0 = int((vx + 5) * 2), int((vy + top0) * 2)
        blocks = all(probe.image.at(x0 + 2 * i, y0 + 2 * j) == probe.image.at(x0 + 2 * i + 1, y0 + 2 * j + 1)
                     for i in range(16) for j in range(15))
        self.assertFalse(blocks, "the row image is drawn at 16 pixels and blown up")

    def test_3_status_pane_text_fits(self):
        window = self.press(self.main(), "Down", "Down")
        panes = kit.controls(window, "59393/QLabel")
        probe = self.probe(window, "scaled-status")
        x, _, w, _ = kit.scaled(panes[1]["rect"], 2)
        self.assertLessEqual(probe.last_ink(panes[1]["rect"]), x + w - 4)

    def test_4_search_dialog_buttons_fit(self):
        window = self.main()
        self.host.click_control(window, tool(window, "Suchen"))
        self.assertButtonsFit(self.opened("Suchen", "scaled-search"))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[1:]], verbosity=2)
