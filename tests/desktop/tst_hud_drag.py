#!/usr/bin/python3
"""The HUD moves when its background is dragged with the real pointer, stays open while it
moves, and still closes when another application becomes active.

Runs inside scripts/desktop-session (openbox as the window manager).
"""
import os
import subprocess
import sys
import time

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, control, find_all,  # noqa: E402
                             finished_setup_home, run, start_small_editor, stop_tessaline,
                             tessaline_app, tessaline_binary, visible_windows, wait_until)

check = Checks()


def geometry(window):
    """(x, y, width, height) of a window on the screen."""
    shell = run("xdotool", "getwindowgeometry", "--shell", window).stdout
    values = dict(line.split("=") for line in shell.split() if "=" in line)
    return tuple(int(values[k]) for k in ("X", "Y", "WIDTH", "HEIGHT"))


def drag(start, delta, steps=8):
    """Presses the left button at `start`, moves by `delta` in steps and releases it."""
    x, y = start
    run("xdotool", "mousemove", str(x), str(y))
    time.sleep(0.1)
    run("xdotool", "mousedown", "1")
    for step in range(1, steps + 1):
        time.sleep(0.05)
        run("xdotool", "mousemove", str(x + delta[0] * step // steps),
            str(y + delta[1] * step // steps))
    time.sleep(0.1)
    run("xdotool", "mouseup", "1")


def show_hud_over(window):
    run("xdotool", "windowactivate", "--sync", window)
    control("ShowHUD")
    shown = wait_until(lambda: visible_windows("^Tessaline$"), 5)
    return shown[0] if shown else None


env = finished_setup_home("tessaline-drag-",
                          {"global": [{"name": "Lock screen", "chord": "⌃ ⌥ L"}], "apps": []})
editor, editor_window = start_small_editor(env)

app = subprocess.Popen([tessaline_binary()], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")
    hud = show_hud_over(editor_window)
    check(hud is not None, "the HUD opens over the editor")
    time.sleep(0.5)
    x, y, width, height = geometry(hud)

    # The margin above the header is background: dragging it moves the panel by the pointer's
    # travel, and the panel stays open and active all the way.
    dx = -90 if x > 100 else 90
    dy = -70 if y > 100 else 70
    drag((x + width // 2, y + 6), (dx, dy))
    moved = wait_until(lambda: geometry(hud)[:2] == (x + dx, y + dy), 3)
    check(moved, "dragging the background moves the HUD by the pointer's travel "
          "(from %d,%d to %d,%d)" % ((x, y) + geometry(hud)[:2]))
    time.sleep(0.5)
    check(bool(visible_windows("^Tessaline$")), "the HUD is still shown after the drag")
    active = run("xdotool", "getactivewindow").stdout.strip()
    check(active == hud, "the HUD is still the active window after the drag")

    # A drag that starts on the search field is the field's: the panel stays where it is.
    x, y = geometry(hud)[:2]
    fields = wait_until(lambda: find_all(tessaline_app(), lambda n: n.name ==
                                         "Search shortcuts, actions, or tags"), 5)
    check(bool(fields), "the search field is on the accessibility bus")
    if fields:
        box = fields[0].queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        drag((box.x + 20, box.y + box.height // 2), (60, 50))
        time.sleep(0.5)
        check(geometry(hud)[:2] == (x, y), "a drag on the search field does not move the HUD")
        check(bool(visible_windows("^Tessaline$")), "the HUD is still shown")

    # Another application becoming active still closes the HUD.
    run("xdotool", "windowactivate", editor_window)
    check(wait_until(lambda: not visible_windows("^Tessaline$"), 5),
          "activating another window closes the HUD")
finally:
    stop_tessaline(app)
    editor.terminate()
    editor.wait(10)

check.finish()
