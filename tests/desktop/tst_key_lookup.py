#!/usr/bin/python3
"""What does this key do? In the HUD, Ctrl+K and then a chord pressed on the real keyboard list
every shortcut bound to it, by source: the application's pack, the global list and the
desktop's own bindings. The chord reaches neither the search field nor the application behind
the HUD, and Escape goes back to the cheat sheet with the HUD still open. Rows whose chord
clashes carry their reason as their accessible description.

Runs inside scripts/desktop-session (openbox as the window manager; the GNOME window-manager
key schema of Debian gives the desktop's bindings, Super+H minimizes).
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
PLACEHOLDER = "Search shortcuts, actions, or tags"
ASKING = "Press a shortcut…"

vault = {
    "global": [{"name": "Store everything", "chord": "Ctrl+S"},
               {"name": "Lock screen", "chord": "⌃ ⌥ L"}],
    "apps": [{"name": "Mousepad", "bundleID": "org.xfce.mousepad", "shortcuts": [
        {"name": "Save", "chord": "⌃ S"},
        {"name": "Save All", "chord": "⌃S"},
        {"name": "Hide window", "chord": "⌘ H"},
        {"name": "Find", "chord": "⌃ F"}]}],
}


def showing(node):
    try:
        return node.getState().contains(pyatspi.STATE_SHOWING)
    except Exception:
        return False


def search_field():
    """The HUD's search field, by the name it has in the current mode."""
    app = tessaline_app()
    if app is None:
        return None
    fields = find_all(app, lambda n: n.getRoleName() in ("text", "entry")
                      and n.name in (PLACEHOLDER, ASKING) and showing(n))
    return fields[0] if fields else None


def field_text():
    field = search_field()
    if field is None:
        return None
    text = field.queryText()
    return text.getText(0, text.characterCount)


def rows():
    """The names of the list's rows on screen ("Save, Ctrl+S"), in order."""
    app = tessaline_app()
    if app is None:
        return []
    return [n.name for n in find_all(app, lambda n: n.getRoleName() == "list item" and showing(n))]


def row_descriptions():
    app = tessaline_app()
    if app is None:
        return {}
    return {n.name: n.description for n in
            find_all(app, lambda n: n.getRoleName() == "list item" and showing(n))}


def labels():
    app = tessaline_app()
    if app is None:
        return []
    return [n.name for n in find_all(app, lambda n: n.getRoleName() == "label" and showing(n))]


def key(chord):
    run("xdotool", "key", "--clearmodifiers", chord)
    time.sleep(0.3)


env = finished_setup_home("tessaline-lookup-", vault)
editor, editor_window = start_small_editor(env)
app = subprocess.Popen([tessaline_binary()], env=env, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")
    run("xdotool", "windowactivate", "--sync", editor_window)
    control("ShowHUD")
    check(bool(wait_until(lambda: visible_windows("^Tessaline$"), 5)), "the HUD opens over the editor")
    check(wait_until(lambda: field_text() == "", 10), "the search field is on the bus and empty")

    # The clashing rows say why, to assistive tools.
    descriptions = wait_until(lambda: (lambda d: d if "Save, Ctrl+S" in d else None)(
        row_descriptions()), 5) or {}
    check(descriptions.get("Save, Ctrl+S") == "Also bound to “Save All” in this app",
          "the row Save says it clashes with Save All (%r)" % descriptions.get("Save, Ctrl+S"))
    check(descriptions.get("Hide window, Super+H", "").startswith("The desktop takes this key: "),
          "the row Hide window says the desktop takes Super+H (%r)"
          % descriptions.get("Hide window, Super+H"))
    check(descriptions.get("Find, Ctrl+F") == "", "a row without a clash has no description")

    key("ctrl+k")
    check(wait_until(lambda: search_field() is not None and search_field().name == ASKING, 5),
          "Ctrl+K turns the search field into %r" % ASKING)

    key("ctrl+s")
    check(wait_until(lambda: field_text() == "Ctrl+S", 5),
          "the search field shows the chord pressed (%r)" % field_text())
    found = wait_until(lambda: (lambda r: r if len(r) == 3 else None)(rows()), 5) or rows()
    check(found == ["Save, Ctrl+S", "Save All, Ctrl+S", "Store everything, Ctrl+S"],
          "Ctrl+S lists the app's two shortcuts and the global one (%r)" % found)
    shown_labels = labels()
    check("Mousepad" in shown_labels and "Global" in shown_labels,
          "the rows are labelled by their source")
    title = run("xdotool", "getwindowname", editor_window).stdout
    check(not title.startswith("Save As") and not visible_windows("^Save As"),
          "the chord did not reach the editor")

    key("super+h")
    found = wait_until(lambda: (lambda r: r if len(r) >= 2 else None)(rows()), 5) or rows()
    check(found[:1] == ["Hide window, Super+H"] and "Minimize, Super+H" in found,
          "Super+H lists the app's shortcut and the desktop's own binding (%r)" % found)
    check(any(label.startswith("Desktop: org.gnome.desktop.wm.keybindings")
              for label in labels()), "the desktop's row names the setting it comes from")

    key("Escape")
    check(wait_until(lambda: search_field() is not None and search_field().name == PLACEHOLDER,
                     5), "Escape leaves key lookup")
    time.sleep(0.5)
    check(bool(visible_windows("^Tessaline$")), "the HUD stays open after Escape")
    check(field_text() == "", "the search field is empty again")
    check(wait_until(lambda: len(rows()) == 6, 5), "the cheat sheet is back (%r)" % rows())

    key("Escape")
    check(wait_until(lambda: not visible_windows("^Tessaline$"), 5),
          "a second Escape closes the HUD")
finally:
    stop_tessaline(app)
    editor.terminate()
    editor.wait(10)

check.finish()
