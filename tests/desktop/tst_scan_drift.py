#!/usr/bin/python3
"""A rescan tells which shortcuts of the last scan changed, on a real X11 desktop.

Runs inside scripts/desktop-session. The Qt sample application is scanned from the HUD, then
started again as a later version of itself (Save moved from Ctrl+S to Ctrl+Alt+S, Quit gone)
and scanned again. Read through AT-SPI as a screen reader reads it: the HUD's status line adds
", 2 changed since the last scan", the Quit row and the old Save row say they are no longer in
the menus, and the new Save row tells its old chord. `tessaline-vault prune` then removes the
two stale rows, and the running HUD follows the vault file.
"""
import json
import os
import re
import subprocess
import sys
import tempfile
import time

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, act, bus_name_owned, control, find_all, run,  # noqa: E402
                             set_accessibility, stop_tessaline, tessaline_app, tessaline_binary,
                             visible_windows, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
VAULT_CLI = os.path.join(BUILD, "bin", "tessaline-vault")
QT_APP = os.path.join(BUILD, "bin", "scan_qt_menu_app")
QT_ID = "scan_qt_menu_app"
STALE = "The last menu scan did not find this shortcut"
check = Checks()

home = tempfile.mkdtemp(prefix="tessaline-drift-")
log_path = os.path.join(home, "tessaline.log")
vault_path = home + "/.local/share/Tessaline/keybinds.json"
history_path = home + "/.local/share/Tessaline/scan-history.json"
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
           QT_MESSAGE_PATTERN="%{type} %{category}: %{message}",
           QT_LOGGING_RULES="tessaline.scan.debug=true\ntessaline.tracker.timing.debug=true")
env.pop("SCAN_SAMPLE_MENU_CHANGED", None)
os.makedirs(home + "/.config/Tessaline")
os.makedirs(os.path.dirname(vault_path))
with open(home + "/.config/Tessaline/defaults.json", "w") as f:
    json.dump({"Onboarding.completed": {"type": "bool", "value": True}}, f)
with open(vault_path, "w") as f:
    json.dump({"global": [], "apps": []}, f)
set_accessibility(True)


def log_text():
    with open(log_path, encoding="utf-8", errors="replace") as f:
        return f.read()


def app_in_front():
    """The bundle id the tracker last named as the app in front."""
    named = re.findall(r"app in front (\S+) at", log_text())
    return named[-1] if named else None


def start_sample(changed):
    sample_env = dict(env, SCAN_SAMPLE_MENU_CHANGED="1") if changed else env
    process = subprocess.Popen([QT_APP], env=sample_env, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    found = wait_until(lambda: run("xdotool", "search", "--onlyvisible", "--pid",
                                   str(process.pid)).stdout.split(), 20)
    return process, (found[-1] if found else None)


def show_hud_over(window, query=""):
    """Brings `window` to the front and, once the tracker names its app, opens the HUD (with
    `query` typed into its search field)."""
    if window is None:
        return False
    run("xdotool", "windowactivate", "--sync", window)
    if not wait_until(lambda: app_in_front() == QT_ID, 10, 0.05):
        return False
    control("ShowHUD")
    if not wait_until(lambda: visible_windows("^Tessaline$"), 5):
        return False
    time.sleep(0.4)
    if query:
        run("xdotool", "type", "--delay", "20", query)
        time.sleep(0.4)
    return True


def close_hud():
    act("Close")
    return wait_until(lambda: not visible_windows("^Tessaline$"), 5)


def labels_matching(pattern):
    app = tessaline_app()
    if app is None:
        return []
    return [n.name for n in find_all(app, lambda n: re.search(pattern, n.name or "") is not None
                                     and n.getRoleName() in ("label", "static"))]


def rows():
    """The shortcut rows on screen: accessible name ("Save, Ctrl+S") to description."""
    app = tessaline_app()
    if app is None:
        return {}
    found = find_all(app, lambda n: n.getRoleName() == "list item"
                     and n.getState().contains(pyatspi.STATE_SHOWING))
    return {n.name: n.description or "" for n in found}


def cli(*args):
    return subprocess.run([VAULT_CLI, *args], env=env, capture_output=True, text=True, timeout=60)


def qt_pack():
    with open(vault_path) as f:
        packs = [p for p in json.load(f)["apps"] if p.get("bundleID") == QT_ID]
    return packs[0]["shortcuts"] if packs else []


sample, window = start_sample(changed=False)
log = open(log_path, "w")
app = subprocess.Popen([tessaline_binary()], env=env, stdout=log, stderr=log)
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")
    check(window is not None, "the Qt sample application shows its window")

    # The first scan, from the callout of an app that is not in the vault yet.
    check(show_hud_over(window), "the HUD opens for the Qt sample")
    check(act("Scan Menus"), '"Scan Menus" has an action')
    first = wait_until(lambda: labels_matching(r"^Added \d+ of \d+ discovered shortcuts for "
                                               + QT_ID + r"\.$"), 60)
    check(bool(first), "the first scan says what it added: %s" % (first or labels_matching("Added")))
    check(not labels_matching("changed since the last scan"),
          "the first scan has nothing to compare with")
    check(os.path.exists(history_path), "the scan is kept in scan-history.json beside the vault")
    check(close_hud(), "the HUD closes")

    # A later version of the application: Save has a new chord, Quit is gone.
    sample.terminate()
    sample.wait(10)
    sample, window = start_sample(changed=True)
    check(show_hud_over(window), "the HUD opens for the changed Qt sample")
    check(act("Scan the current app's menus"), "the header's scan button has an action")
    second = wait_until(lambda: labels_matching(
        r"^Added 1 of \d+ discovered shortcuts for " + QT_ID
        + r", 2 changed since the last scan\.$"), 60)
    check(bool(second), "the rescan's status line counts the 2 changed shortcuts: %s"
          % (second or labels_matching("for " + QT_ID)))
    check(close_hud(), "the HUD closes")

    # The merge kept every item: the vault file holds both Saves and Quit, with no new keys.
    pack = qt_pack()
    check({(s["name"], s["chord"]) for s in pack} >= {("Save", "⌃ S"), ("Save", "⌃ ⌥ S"),
                                                       ("Quit", "⌃ Q")},
          "the vault keeps the old rows beside the new one")
    check(all(set(s) <= {"name", "chord", "favorite", "menu", "tags", "note", "source"}
              for s in pack), "the vault's items carry only the fields of the file format")

    check(show_hud_over(window, "quit"), "the HUD opens with a search for Quit")
    shown = wait_until(lambda: rows().get("Quit, Ctrl+Q"), 5)
    check(shown == STALE, "the Quit row says it is not in the menus: %r" % rows())
    check(bool(labels_matching("^not in the menus$")), 'the Quit row carries "not in the menus"')
    check(close_hud(), "the HUD closes")

    check(show_hud_over(window, "save"), "the HUD opens with a search for Save")
    wait_until(lambda: len(rows()) >= 2, 5)
    found = rows()
    check(found.get("Save, Ctrl+S") == STALE, "the old Save row is stale: %r" % found)
    check("was Ctrl+S" in found.get("Save, Ctrl+Alt+S", ""),
          "the new Save row tells its old chord: %r" % found)
    check(bool(labels_matching("^was Ctrl\\+S$")), 'the new Save row shows "was Ctrl+S"')

    # Prune removes the stale rows from the file; the open HUD follows the file.
    pruned = cli("prune", "--bundle-id", QT_ID)
    check(pruned.returncode == 0 and pruned.stdout == "Quit\tCtrl+Q\nSave\tCtrl+S\n",
          "prune removes the two stale rows: %r %r" % (pruned.stdout, pruned.stderr))
    check(wait_until(lambda: "Save, Ctrl+S" not in rows() and "Save, Ctrl+Alt+S" in rows(), 10),
          "the running HUD drops the pruned row: %r" % rows())
    check(not labels_matching("^was Ctrl\\+S$"), "with the old row gone, no old chord is shown")
    check({(s["name"], s["chord"]) for s in qt_pack()}.isdisjoint({("Save", "⌃ S"),
                                                                  ("Quit", "⌃ Q")}),
          "the vault file no longer holds the stale rows")
    again = cli("prune", "--bundle-id", QT_ID)
    check(again.returncode == 0 and again.stdout == "" and again.stderr == "Nothing to prune.\n",
          "a second prune has nothing to do")
    unknown = cli("prune", "--bundle-id", "org.example.Nowhere")
    check(unknown.returncode == 1 and "org.example.Nowhere" in unknown.stderr,
          "prune of an unknown app fails and says why")
    close_hud()
finally:
    stop_tessaline(app)
    sample.terminate()
    sample.wait(10)
    log.close()

check.finish()
