#!/usr/bin/python3
"""Running shortcuts in their applications on a real X11 desktop.

Runs inside scripts/desktop-session. From the HUD (Ctrl+Return on the selected row) and from
`tessaline-vault run`: a scanned menu row of mousepad and of the Qt sample application runs its
menu item, a greyed-out or vanished item runs nothing and says why, a curated row's chord is
typed into the editor, and a chord with a key the keyboard layout lacks is refused.
"""
import json
import os
import subprocess
import sys
import tempfile
import time

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, control, find_all, finished_setup_home,  # noqa: E402
                             run, set_accessibility, start_small_editor, stop_tessaline,
                             tessaline_app, tessaline_binary, visible_windows, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
VAULT_CLI = os.path.join(BUILD, "bin", "tessaline-vault")
QT_APP = os.path.join(BUILD, "bin", "scan_qt_menu_app")
EDITOR_ID = "org.xfce.mousepad"
QT_ID = "scan_qt_menu_app"

check = Checks()


def scanned(name, chord, menu):
    return {"name": name, "chord": chord, "menu": menu, "tags": ["scanned", "menu"],
            "source": "scanned-menu"}


vault = {"global": [], "apps": [
    {"name": "Mousepad", "bundleID": EDITOR_ID, "shortcuts": [
        {"name": "Select Everything", "chord": "⌃ A"},
    ]},
]}
env = finished_setup_home("tessaline-run-", vault)
set_accessibility(True)


def cli(*args):
    return subprocess.run([VAULT_CLI, *args], env=env, capture_output=True, text=True, timeout=60)


def editor_windows():
    return run("xdotool", "search", "--onlyvisible", "--class", "mousepad").stdout.split()


def editor_text():
    """The text of mousepad's editing area, read over the accessibility bus."""
    app = tessaline_app("mousepad")
    if app is None:
        return None
    for node in find_all(app, lambda n: n.getRoleName() in ("text", "view")):
        try:
            text = node.queryText()
            if node.getState().contains(pyatspi.STATE_EDITABLE):
                return text.getText(0, text.characterCount)
        except Exception:
            continue
    return None


def status_lines():
    app = tessaline_app()
    if app is None:
        return []
    return [n.name for n in find_all(app, lambda n: n.name.startswith("Could not run"))]


def show_hud_for_editor(window, query):
    run("xdotool", "windowactivate", "--sync", window)
    time.sleep(0.3)
    control("ShowHUD")
    shown = wait_until(lambda: visible_windows("^Tessaline$"), 5)
    time.sleep(0.4)
    if query:
        run("xdotool", "type", "--delay", "20", query)
        time.sleep(0.3)
    return shown


editor, editor_window = start_small_editor(env)
qt_out = tempfile.NamedTemporaryFile(prefix="qt-menu-app-", suffix=".log", delete=False)
qt_app = subprocess.Popen([QT_APP], env=env, stdout=qt_out, stderr=subprocess.DEVNULL)
wait_until(lambda: visible_windows("^Scan Menu Sample$"), 15)

# Real menu scans give the scanned rows, with the menu paths the scanner writes.
scan = cli("scan", "--bundle-id", EDITOR_ID)
check(scan.returncode == 0, "mousepad's menus are scanned: " + scan.stdout.strip())
scan = cli("scan", "--bundle-id", QT_ID)
check(scan.returncode == 0, "the Qt sample's menus are scanned: " + scan.stdout.strip())
with open(env["XDG_DATA_HOME"] + "/Tessaline/keybinds.json") as f:
    stored = json.load(f)
rows = {(p["bundleID"], s["name"]): s for p in stored["apps"] for s in p["shortcuts"]}
check(rows.get((EDITOR_ID, "New Window"), {}).get("menu") == "File",
      "the scanned New Window row of mousepad is filed under File")

# A scanned row whose item is not in the menus, and a scanned Qt row whose chord is made one the
# application does not know, so that only its menu item can run it.
check(any(key == (QT_ID, "Full Screen") for key in rows), "the Qt sample's Full Screen was scanned")
for pack in stored["apps"]:
    if pack["bundleID"] == EDITOR_ID:
        pack["shortcuts"].append(scanned("Vanished Item", "⌃ ⌥ F9", "File"))
    for row in pack["shortcuts"]:
        if pack["bundleID"] == QT_ID and row["name"] == "Full Screen":
            row["chord"] = "⌃ ⌥ F12"
with open(env["XDG_DATA_HOME"] + "/Tessaline/keybinds.json", "w") as f:
    json.dump(stored, f)

app = subprocess.Popen([tessaline_binary()], env=env,
                       stderr=open(os.environ.get("TESSALINE_E2E_LOG", os.devnull), "a"))
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")

    # A greyed-out item (nothing to undo in a fresh document) runs nothing; the next HUD says so.
    check(show_hud_for_editor(editor_window, "undo"), "the HUD opens for mousepad")
    run("xdotool", "key", "Down", "ctrl+Return")
    check(wait_until(lambda: not visible_windows("^Tessaline$"), 5), "Ctrl+Return closes the HUD")
    time.sleep(0.5)
    show_hud_for_editor(editor_window, "")
    lines = wait_until(status_lines, 5)
    check(lines == ["Could not run “Undo”: the menu item is disabled."],
          "the next HUD says the item is disabled: %s" % lines)
    check(len(editor_windows()) == 1, "the disabled item opened nothing")
    run("xdotool", "key", "Escape")
    wait_until(lambda: not visible_windows("^Tessaline$"), 5)

    # A curated row's chord is typed into the editor: Ctrl+A selects the text, so the next
    # letter replaces it.
    run("xdotool", "windowactivate", "--sync", editor_window)
    run("xdotool", "type", "--delay", "20", "hello world")
    check(wait_until(lambda: editor_text() == "hello world", 5), "the editor holds the typed text")
    show_hud_for_editor(editor_window, "select everything")
    run("xdotool", "key", "Down", "ctrl+Return")
    check(wait_until(lambda: not visible_windows("^Tessaline$"), 5), "the HUD closes for the chord")
    time.sleep(0.6)
    run("xdotool", "type", "x")
    check(wait_until(lambda: editor_text() == "x", 5),
          "the curated row's Ctrl+A reached the editor: %r" % editor_text())

    # The scanned New Window row runs mousepad's menu item: a second window opens.
    show_hud_for_editor(editor_window, "new window")
    run("xdotool", "key", "Down", "ctrl+Return")
    check(wait_until(lambda: len(editor_windows()) == 2, 5),
          "running New Window from the HUD opens a second mousepad window")

    # The command line: a Qt menu item runs through its menu, not its chord (the row's chord in
    # the vault was changed to one that means nothing to the application).
    ran = cli("run", "Full Screen", "⌃ ⌥ F12", "--bundle-id", QT_ID)
    check(ran.returncode == 0 and ran.stdout.strip() == "Ran “Full Screen” in scan_qt_menu_app.",
          "run reports the Qt menu item it ran: %r %r" % (ran.stdout, ran.stderr))
    qt_log = lambda: open(qt_out.name).read()  # noqa: E731
    check(wait_until(lambda: "triggered Full Screen" in qt_log(), 5),
          "the Qt sample's Full Screen menu item ran")

    # A disabled Qt item runs nothing and says so.
    ran = cli("run", "Redo", "Ctrl+Shift+Z", "--bundle-id", QT_ID)
    check(ran.returncode == 1 and ran.stderr.strip() ==
          "tessaline-vault: Could not run “Redo”: the menu item is disabled.",
          "run refuses the disabled Redo: %r" % ran.stderr)
    time.sleep(0.5)
    check("triggered Redo" not in qt_log(), "the disabled Redo did not run")

    # An item gone from the menus, a key not on the layout, an application not running.
    ran = cli("run", "Vanished Item", "Ctrl+Alt+F9", "--bundle-id", EDITOR_ID)
    check(ran.returncode == 1 and ran.stderr.strip() ==
          "tessaline-vault: Could not run “Vanished Item”: the menu item is no longer in "
          "Mousepad's menus.", "run says when the item is gone: %r" % ran.stderr)
    ran = cli("run", "Zhe", "⌃ ж", "--bundle-id", EDITOR_ID)
    check(ran.returncode == 1 and ran.stderr.strip() ==
          "tessaline-vault: Could not run “Zhe”: ⌃ ж cannot be typed on the current keyboard "
          "layout.", "run refuses a key the layout lacks: %r" % ran.stderr)
    ran = cli("run", "Save", "Ctrl+S", "--bundle-id", "org.example.NotRunning")
    check(ran.returncode == 1 and "is not running" in ran.stderr,
          "run says when the app is not running: %r" % ran.stderr)
    ran = cli("run", "Save", "Ctrl+S")
    check(ran.returncode == 2, "run without --bundle-id is a usage error")
finally:
    stop_tessaline(app)
    for process in (editor, qt_app):
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
    os.unlink(qt_out.name)

check.finish()
