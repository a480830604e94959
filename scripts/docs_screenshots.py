#!/usr/bin/env python3
"""Makes the screenshots in docs/ from cadhost's real window mode: an Xvfb server of its own,
cadhost with the sample drawing Werkhalle.dxf, VarDesk typed into the command line, the dialogs
driven by xdotool, each shot taken of the window as the X server shows it.

    CADHOST=build/main/stage/bin/cadhost scripts/docs_screenshots.py [OUTPUT_FOLDER]

The output folder defaults to docs/. Needs xvfb, xdotool and imagemagick (scripts/deps.sh)."""

import os
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "screen"))
import screenkit as kit  # noqa: E402

MAIN_SIZE = (760, 560)


def main_window(host):
    return host.wait_window(lambda w: w["class"] == "cDlgVarDesk", "of VarDesk")


def tool(window, text):
    return next(c for c in window["controls"] if c["class"] == "QToolButton" and c.get("text") == text)


def menu_entry(host, window, menu_text, entry_text):
    bar = kit.control(window, "QMenuBar")
    entry = next(e for e in bar["entries"] if e["text"].replace("&", "") == menu_text)
    x, y, w, h = entry["rect"]
    host.click(window, bar["rect"][0] + x + w // 2, bar["rect"][1] + y + h // 2)
    menu = host.wait_window(lambda w: w["class"] == "QMenu", f"menu {menu_text}")
    item = next(e for e in menu["controls"][0]["entries"] if e["text"].replace("&", "").startswith(entry_text))
    ix, iy, iw, ih = item["rect"]
    host.click(menu, ix + iw // 2, iy + ih // 2)


def shoot(host, window, folder, name):
    host.settle(0.5)
    window = host.wait_window(lambda w: w["xid"] == window["xid"], name)
    path = os.path.join(folder, name)
    ppm = path + ".ppm"
    host.shot(window).save(ppm)
    subprocess.run(["convert", ppm, path], check=True)
    os.remove(ppm)
    print("wrote", path)


def go_to(host, name):
    """Moves the list's focus to the row of name by its first letter and Down, then clicks it."""
    window = main_window(host)
    host.key(window, name[0].lower())
    for _ in range(400):
        window = main_window(host)
        lst = kit.control(window, "9002", "VarListView")
        if lst.get("currentText") == name:
            break
        host.key(window, "Down")
        host.settle(0.35)  # the report catches up
    else:
        raise AssertionError(f"no row {name}")
    # A Down from the row above selects it as a click does.
    host.key(window, "Up", "Down")
    host.settle(0.2)


def dismiss_boxes(host):
    """Waits a moment for a box and answers each with Return."""
    host.settle(0.8)
    for box in [w for w in host.report() if w["class"] == "QMessageBox"]:
        host.key(box, "Return")
        host.wait_gone(box["title"])


def set_value(host, name, value):
    go_to(host, name)
    window = main_window(host)
    field = kit.control(window, "9004", "QLineEdit")
    host.click_control(window, field)
    host.key(window, "ctrl+a")
    host.type(window, value)
    host.key(window, "Tab")
    host.settle(0.3)


def main():
    folder = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "docs"))
    os.makedirs(folder, exist_ok=True)
    work = tempfile.mkdtemp(prefix="vardesk-docs-")
    shutil.copy(os.path.join(ROOT, "data", "samples", "Werkhalle.dxf"), work)
    screen = kit.Xvfb()
    host = kit.Cadhost(screen, args=[os.path.join(work, "Werkhalle.dxf")], workdir=work)
    try:
        host.window("cadhost")
        host.settle(0.5)
        host.command("KOVA_VARDESK")
        window = main_window(host)
        host.xdo("windowsize", "--sync", window["xid"], str(MAIN_SIZE[0]), str(MAIN_SIZE[1]))
        host.settle(0.6)
        window = main_window(host)
        shoot(host, window, folder, "01-main-by-name.png")
        for text, name in (("Nach Themen geordnet", "02-main-by-theme.png"),
                           ("Nach Gültigkeitsbereich (alphabetisch) geordnet", "03-main-by-scope-and-name.png"),
                           ("Nach Gültigkeitsbereich (Themen) geordnet", "04-main-by-scope-and-theme.png")):
            host.click_control(window, tool(window, text))
            shoot(host, window, folder, name)
            window = main_window(host)
        host.click_control(window, tool(window, "Alphabetisch geordnet"))
        host.settle()

        # A search over names, descriptions and values.
        window = main_window(host)
        host.click_control(window, tool(window, "Suchen"))
        search = host.window("Suchen")
        host.settle(0.5)
        search = host.window("Suchen")
        host.click_control(search, next(c for c in search["controls"] if c["path"].endswith("1006")))
        host.type(search, "GRENZ")
        host.click_control(search, next(c for c in search["controls"] if c.get("text") == "Suchen"))
        dismiss_boxes(host)
        search = host.window("Suchen")
        shoot(host, search, folder, "05-search.png")
        host.click_control(search, next(c for c in search["controls"] if c.get("text") == "alle Treffer"))
        dismiss_boxes(host)
        search = host.window("Suchen")
        host.click_control(search, next(c for c in search["controls"] if c.get("text") == "Abbrechen"))
        host.wait_gone(search["title"])
        window = main_window(host)
        shoot(host, window, folder, "06-search-hits.png")

        # Three wanted values: the host takes one, refuses one and changes one on the way.
        for name, value in (("LUPREC", "2"), ("OSMODE", "20000"), ("ANGBASE", "7")):
            set_value(host, name, value)
        window = main_window(host)
        host.click_control(window, tool(window, "Nur Benutzerdefinierte"))
        window = main_window(host)
        shoot(host, window, folder, "07-user-list.png")
        window = main_window(host)
        set_all = next(c for c in window["controls"] if c["class"] == "QToolButton"
                       and c.get("text", "").startswith("Alle setzen"))
        host.click_control(window, set_all)
        dismiss_boxes(host)
        window = main_window(host)
        shoot(host, window, folder, "08-after-set.png")

        menu_entry(host, window, "?", "Info")
        info = host.wait_window(lambda w: w["class"] == "cDlgInfo", "Info")
        shoot(host, info, folder, "09-info.png")
    finally:
        print(host.output()[-2000:])
        host.stop()
        screen.stop()


if __name__ == "__main__":
    main()
