#!/usr/bin/python3
"""Tessaline's tray icon inside a real panel (tint2, an XEmbed tray): a one-colour keyboard
that stands out from the panel around it.

Runs inside scripts/desktop-session --tray. With TESSALINE_E2E_SHOTS set to a folder, the
screen is saved there as tray.png to be looked at.
"""
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, finished_setup_home, run,  # noqa: E402
                             stop_tessaline, tessaline_binary, tray_icon_geometry, wait_until)

check = Checks()


def pixels(x, y, width, height):
    """The screen's pixels in a rectangle, as {(x, y): (r, g, b)} in screen coordinates."""
    text = run("import", "-window", "root", "-crop", "%dx%d+%d+%d" % (width, height, x, y),
               "-depth", "8", "txt:-").stdout
    found = {}
    for line in text.splitlines():
        if line.startswith("#"):
            continue
        where, _, rest = line.partition(":")
        values = rest.strip().split(")")[0].lstrip("(").split(",")
        px, py = (int(v) for v in where.split(","))
        found[(x + px, y + py)] = tuple(int(float(v)) for v in values[:3])
    return found


def brightness(rgb):
    return (299 * rgb[0] + 587 * rgb[1] + 114 * rgb[2]) / 1000


env = finished_setup_home("tessaline-tray-")

app = subprocess.Popen([tessaline_binary()], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")
    box = wait_until(tray_icon_geometry, 10)
    check(box is not None, "the tray icon is embedded in the panel")
    if box:
        # The icon is drawn again for its panel once the tray has placed it.
        time.sleep(2)
        if os.environ.get("TESSALINE_E2E_SHOTS"):
            run("import", "-window", "root", os.environ["TESSALINE_E2E_SHOTS"] + "/tray.png")
        x, y, width, height = box
        ring = 3
        around = pixels(x - ring, y - ring, width + 2 * ring, height + 2 * ring)
        inside = {p: c for p, c in around.items()
                  if x <= p[0] < x + width and y <= p[1] < y + height}
        panel = [c for p, c in around.items() if p not in inside]
        check(bool(inside) and bool(panel), "the screen around the icon can be read")
        if inside and panel:
            panel_level = sum(brightness(c) for c in panel) / len(panel)
            levels = [brightness(c) for c in inside.values()]
            glyph = [v for v in levels if abs(v - panel_level) > 100]
            print("panel brightness %.0f, icon brightness %.0f..%.0f, %d of %d pixels stand out"
                  % (panel_level, min(levels), max(levels), len(glyph), len(levels)))
            check(len(glyph) >= len(levels) // 10,
                  "the glyph stands out from the panel (at least a tenth of the icon)")
            colors = {c for p, c in inside.items() if abs(brightness(c) - panel_level) > 100}
            greys = all(max(c) - min(c) <= 24 for c in colors)
            check(greys, "the glyph is one neutral colour, not the colour logo")
            if panel_level < 100:
                check(max(levels) >= 200, "on a dark panel the glyph is light")
            else:
                check(min(levels) <= 80, "on a light panel the glyph is dark")
finally:
    stop_tessaline(app)

check.finish()
