#!/usr/bin/python3
"""A running Tessaline and the command line share one vault file.

Runs inside scripts/desktop-session. While the HUD is open, `tessaline-vault favorite` stars a
shortcut: the HUD shows the star without any click. A star set in the HUD right after another
one set from the command line keeps both in the file, and an edit made in place by a text
editor shows too. The HUD is read and pressed only through the accessibility bus.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import pyatspi  # noqa: E402
from desktop_support import (Checks, bus_name_owned, control, find_all, run, stop_tessaline,  # noqa: E402
                             tessaline_app, visible_windows, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
VAULT_CLI = os.path.join(BUILD, "bin", "tessaline-vault")
check = Checks()


def row(name):
    """The HUD's row of the named shortcut, as it is on screen now."""
    app = tessaline_app()
    if app is None:
        return None
    rows = find_all(app, lambda n: n.getRoleName() == "list item"
                    and (n.name or "").startswith(name + ", ")
                    and n.getState().contains(pyatspi.STATE_SHOWING))
    return rows[0] if rows else None


def star_of(name):
    """The star button of the named row: its name says what pressing it does."""
    node = row(name)
    if node is None:
        return None
    stars = find_all(node, lambda n: n.name in ("Add to favorites", "Remove from favorites"))
    return stars[0] if stars else None


def starred(name):
    star = star_of(name)
    return star is not None and star.name == "Remove from favorites"


def not_starred(name):
    star = star_of(name)
    return star is not None and star.name == "Add to favorites"


def press_star(name):
    star = wait_until(lambda: star_of(name), 5)
    if star is None:
        return False
    action = star.queryAction()
    return action.nActions > 0 and action.doAction(0)


def favorites_in_file():
    try:
        with open(vault) as f:
            data = json.load(f)
    except (OSError, ValueError):
        return set()
    return {item["name"] for item in data["global"] if item.get("favorite") is True}


home = tempfile.mkdtemp(prefix="tessaline-writers-")
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
vault = home + "/.local/share/Tessaline/keybinds.json"
os.makedirs(os.path.dirname(vault))
os.makedirs(home + "/.config/Tessaline")
with open(home + "/.config/Tessaline/defaults.json", "w") as f:
    json.dump({"Onboarding.completed": {"type": "bool", "value": True}}, f)
with open(vault, "w") as f:
    json.dump({"global": [{"name": "Alpha probe", "chord": "⌃ ⌥ A"},
                          {"name": "Beta probe", "chord": "⌃ ⌥ B"},
                          {"name": "Gamma probe", "chord": "⌃ ⌥ G"}], "apps": []}, f)

editor = subprocess.Popen(["mousepad", "--disable-server"], env=env,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
editor_window = wait_until(lambda: run("xdotool", "search", "--onlyvisible", "--class",
                                       "mousepad").stdout.split(), 15)[0]
app = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")
    check(wait_until(lambda: tessaline_app() is not None, 10), "Tessaline is on the accessibility bus")
    run("xdotool", "windowactivate", "--sync", editor_window)
    control("ShowHUD")
    check(wait_until(lambda: visible_windows("^Tessaline$"), 5), "the HUD opens")
    check(wait_until(lambda: not_starred("Alpha probe"), 10), "Alpha probe shows without a star")

    # The command line stars Alpha; the open HUD follows by itself.
    result = run(VAULT_CLI, "favorite", "Alpha probe", "⌃ ⌥ A", env=env)
    check(result.returncode == 0, "tessaline-vault favorite succeeds: " + result.stderr.strip())
    check(wait_until(lambda: starred("Alpha probe"), 10),
          "the HUD shows the star set from the command line, without a click")

    # The command line stars Gamma, and at once the HUD stars Beta: the file keeps both, whether
    # or not the HUD had read Gamma's star before its own write.
    result = run(VAULT_CLI, "favorite", "Gamma probe", "⌃ ⌥ G", env=env)
    check(result.returncode == 0, "a second command-line star succeeds")
    check(press_star("Beta probe"), "Beta's star can be pressed through the accessibility bus")
    check(wait_until(lambda: favorites_in_file() == {"Alpha probe", "Beta probe", "Gamma probe"},
                     10),
          "the file keeps the command line's stars and the HUD's")
    check(wait_until(lambda: starred("Beta probe") and starred("Gamma probe"), 10),
          "the HUD shows all three stars")

    # A text editor that writes over the file in place.
    with open(vault, "w") as f:
        json.dump({"global": [{"name": "Alpha probe", "chord": "⌃ ⌥ A"},
                              {"name": "Delta probe", "chord": "⌃ ⌥ D"}], "apps": []}, f)
    check(wait_until(lambda: row("Delta probe") is not None, 10),
          "an edit made in a text editor shows without the reload button")
    check(wait_until(lambda: row("Beta probe") is None, 5), "and what it removed goes away")
finally:
    stop_tessaline(app)
    editor.kill()
    shutil.rmtree(home, ignore_errors=True)

check.finish()
