#!/usr/bin/python3
"""Tessaline's controls do their job when an assistive tool presses them.

Runs inside scripts/desktop-session. Drives the welcome window, the HUD, the settings window
and the browser only through AT-SPI actions, as a screen reader does (no mouse, no keys), and
checks the effect of each control.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (act, bus_name_owned, control, find_all, named, run,  # noqa: E402
                             stop_tessaline, tessaline_app, visible_windows, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
failures = []
passes = []


def check(condition, what):
    print(("PASS " if condition else "FAIL ") + what, flush=True)
    (passes if condition else failures).append(what)


def show_hud_over(window):
    """Brings `window` to the front, then asks Tessaline for its HUD, as the hotkey would."""
    run("xdotool", "windowactivate", "--sync", window)
    control("ShowHUD")
    return wait_until(lambda: visible_windows("^Tessaline$"), 5)


def shows(text):
    app = tessaline_app()
    return app is not None and bool(find_all(app, lambda n: text in (n.name or "")))


home = tempfile.mkdtemp(prefix="tessaline-actions-")
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
vault = home + "/.local/share/Tessaline/keybinds.json"
defaults_file = home + "/.config/Tessaline/defaults.json"
os.makedirs(os.path.dirname(vault))
with open(vault, "w") as f:
    json.dump({"global": [{"name": "Lock screen", "chord": "⌘ L"}], "apps": []}, f)

run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
    "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>")
editor = subprocess.Popen(["mousepad", "--disable-server"], env=env,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
editor_window = wait_until(lambda: run("xdotool", "search", "--onlyvisible", "--class",
                                       "mousepad").stdout.split(), 15)[0]
run("xdotool", "windowactivate", "--sync", editor_window)

app = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")
    check(wait_until(lambda: visible_windows("^Welcome to Tessaline$"), 10), "the welcome window opens")
    check(act("Start using Tessaline"), '"Start using Tessaline" has an action')
    check(wait_until(lambda: not visible_windows("^Welcome to Tessaline$"), 5),
          '"Start using Tessaline" closes the welcome window')

    check(show_hud_over(editor_window), "the HUD opens for Mousepad")

    # Reload: an outside edit of the vault shows after the button's action.
    with open(vault, "w") as f:
        json.dump({"global": [{"name": "Lock screen", "chord": "⌘ L"},
                              {"name": "Tessaline probe", "chord": "⌃ ⌥ P"}], "apps": []}, f)
    check(act("Reload keybinds"), '"Reload keybinds" has an action')
    check(wait_until(lambda: shows("Tessaline probe"), 5), '"Reload keybinds" reads the edited vault')

    # Scan Menus, in the callout for an app that is not in the vault yet.
    check(act("Scan Menus"), '"Scan Menus" has an action')
    check(wait_until(lambda: named("Vault ready", "label"), 30),
          '"Scan Menus" scans Mousepad: the pill reads Vault ready')

    check(act("Close"), '"Close" has an action')
    check(wait_until(lambda: not visible_windows("^Tessaline$"), 5), '"Close" closes the HUD')

    check(show_hud_over(editor_window), "the HUD opens again")
    check(act("Settings"), '"Settings" has an action')
    check(wait_until(lambda: visible_windows("^Tessaline Settings$"), 5),
          '"Settings" opens the settings window')
    check(act("Enable custom HUD hotkey", "check box"), "the hotkey check box has an action")

    def hotkey_enabled():
        try:
            with open(defaults_file) as f:
                return json.load(f).get("Hotkey.enabled", {}).get("value") is True
        except (OSError, ValueError):
            return False
    check(wait_until(hotkey_enabled, 5), "the hotkey check box's action turns the hotkey on")

    # A fresh start, so that the HUD is the only window of Tessaline again.
    stop_tessaline(app)
    app = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
    check(wait_until(bus_name_owned, 20), "Tessaline starts again")
    check(show_hud_over(editor_window), "the HUD opens once more")
    check(act("Browse every saved shortcut"), '"Browse every saved shortcut" has an action')
    check(wait_until(lambda: visible_windows("^All Tessaline Shortcuts$"), 5),
          '"Browse every saved shortcut" opens the browser')
    check(act("Scan Open Apps"), '"Scan Open Apps" has an action')
    check(wait_until(lambda: shows("Scanned "), 30), '"Scan Open Apps" scans and says so')

finally:
    stop_tessaline(app)
    editor.kill()
    shutil.rmtree(home, ignore_errors=True)

print("%d passed, %d failed" % (len(passes), len(failures)))
sys.exit(1 if failures else 0)
