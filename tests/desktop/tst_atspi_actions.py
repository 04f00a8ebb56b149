#!/usr/bin/python3
"""Tessaline's controls do their job when an assistive tool presses them.

Runs inside scripts/desktop-session. Drives the welcome window, the HUD, the settings window,
the browser and a coach tip only through AT-SPI actions, as a screen reader does (no mouse, no
keys into our windows), and checks the effect of each control and the states it shows on the
bus before and after: checked for check boxes, switches, favourite stars and the recording
hotkey field. A disabled button's press must do nothing; Qt 6.4 reports Qt Quick controls as
enabled on the bus whatever their state, so that state is not read here. A coach tip comes from
a media key sent to the editor, the way the user calls one up.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import pyatspi  # noqa: E402
from desktop_support import (Checks, act, bus_name_owned, control, find_all, named, run,  # noqa: E402
                             stop_tessaline, tessaline_app, visible_windows, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
check = Checks()


def states(node):
    """The names of the states an assistive tool reads from the control ("checked", ...)."""
    try:
        return {pyatspi.stateToString(s) for s in node.getState().getStates()}
    except Exception:  # the control is gone
        return set()


def has_state(name, role, state):
    """Whether the named control on screen shows `state`, waiting a little for it."""
    return bool(wait_until(lambda: any(state in states(n) for n in named(name, role)), 5))


def lacks_state(name, role, state):
    return bool(wait_until(lambda: named(name, role) and not any(state in states(n)
                                                                 for n in named(name, role)), 5))


def do_action(node, wanted):
    """Invokes the action called `wanted` ("press", "toggle") of one accessible."""
    try:
        action = node.queryAction()
        for i in range(action.nActions):
            if action.getName(i).lower() == wanted:
                return bool(action.doAction(i))
    except Exception:
        return False
    return False


def row_named(prefix):
    """The shortcut row on screen whose accessible name starts with `prefix`."""
    app = tessaline_app()
    if app is None:
        return None
    rows = find_all(app, lambda n: n.getRoleName() == "list item"
                    and (n.name or "").startswith(prefix)
                    and n.getState().contains(pyatspi.STATE_SHOWING))
    return rows[0] if rows else None


def star_of(row):
    """The favourite toggle inside a row."""
    found = find_all(row, lambda n: n.name in ("Add to favorites", "Remove from favorites"))
    return found[0] if found else None


def clipboard():
    return run("xclip", "-o", "-selection", "clipboard").stdout


def set_clipboard(text):
    # xclip stays behind to serve the text; without pipes to it, the call returns at once.
    # It takes the selection only after that, so wait until it serves the text.
    subprocess.run(["xclip", "-selection", "clipboard"], input=text, text=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wait_until(lambda: clipboard() == text, 5)


def vault_item(name):
    try:
        with open(vault) as f:
            data = json.load(f)
    except (OSError, ValueError):
        return {}
    for item in data.get("global", []):
        if item.get("name") == name:
            return item
    return {}


def default_value(key):
    try:
        with open(defaults_file) as f:
            return json.load(f).get(key, {}).get("value")
    except (OSError, ValueError):
        return None


def show_hud_over(window):
    """Brings `window` to the front, then asks Tessaline for its HUD, as the hotkey would."""
    run("xdotool", "windowactivate", "--sync", window)
    control("ShowHUD")
    return wait_until(lambda: visible_windows("^Tessaline$"), 5)


def shows(text):
    app = tessaline_app()
    return app is not None and bool(find_all(app, lambda n: text in (n.name or "")))


home = tempfile.mkdtemp(prefix="tessaline-actions-")
# A GNOME session as far as key settings go (the values in a key file of this run), so that
# the volume and media keys have bindings for a coach tip to name.
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
           XDG_CURRENT_DESKTOP="GNOME", GSETTINGS_BACKEND="keyfile")
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

    # A row: its press copies the chord; its star is a toggle, checked for a favourite.
    row = wait_until(lambda: row_named("Lock screen, "), 5)
    check(row is not None and do_action(row, "press"), 'the "Lock screen" row has a press action')
    check(wait_until(lambda: clipboard() == "⌘ L", 5), "the row's press copies its chord")
    star = star_of(row) if row is not None else None
    check(star is not None and star.description == "Lock screen",
          "the row's star says which row it belongs to")
    check(star is not None and "checked" not in states(star),
          "the star of a plain row shows unchecked")
    check(star is not None and do_action(star, "toggle"), "the star has a toggle action")
    check(wait_until(lambda: vault_item("Lock screen").get("favorite") is True, 5),
          "the star's action makes the row a favourite in the vault")

    def starred(state):
        r = row_named("Lock screen, ")
        star = star_of(r) if r is not None else None
        return star is not None and (state in states(star)) and star
    star = wait_until(lambda: starred("checked"), 5)
    check(bool(star) and star.name == "Remove from favorites", "the favourite's star shows checked")
    check(bool(star) and do_action(star, "press"), "the star has a press action")
    check(wait_until(lambda: vault_item("Lock screen").get("favorite") is False, 5),
          "pressing the star again takes the favourite back")
    check(wait_until(lambda: starred("enabled") and not starred("checked"), 5),
          "the star shows unchecked again")

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
    check(lacks_state("Enable custom HUD hotkey", "check box", "checked"),
          "the hotkey check box shows unchecked")
    # A press on the disabled "Disable" does nothing: no message that the hotkey was disabled.
    act("Disable")
    check(not wait_until(lambda: shows("HUD hotkey disabled."), 1),
          '"Disable" does nothing while the hotkey is off')
    check(act("Enable custom HUD hotkey", "check box"), "the hotkey check box has an action")
    check(wait_until(lambda: default_value("Hotkey.enabled") is True, 5),
          "the hotkey check box's action turns the hotkey on")
    check(has_state("Enable custom HUD hotkey", "check box", "checked"),
          "the hotkey check box shows checked")

    # The recorder: a press starts a recording, another ends it; the bus shows which.
    def recorder():
        app = tessaline_app()
        found = app and find_all(app, lambda n: (n.name or "").startswith("Hotkey recorder: ")
                                 and n.getState().contains(pyatspi.STATE_SHOWING))
        return found[0] if found else None
    field = wait_until(recorder, 5)
    check(field is not None and "checked" not in states(field),
          "the recorder shows that it is not recording")
    check(field is not None and do_action(field, "press"), "the recorder has a press action")
    check(wait_until(lambda: {"checked", "focused"} <= states(recorder()), 5),
          "the recorder's press starts a recording: it shows checked and has the focus")
    check(do_action(recorder(), "press"), "the recording recorder has a press action")
    check(wait_until(lambda: not {"checked", "focused"} & states(recorder()), 5),
          "a second press ends the recording")

    check(act("Disable"), '"Disable" has an action')
    check(wait_until(lambda: default_value("Hotkey.enabled") is False, 5),
          '"Disable" turns the hotkey off')
    check(lacks_state("Enable custom HUD hotkey", "check box", "checked"),
          "the hotkey check box shows unchecked again")

    autostart = home + "/.config/autostart"
    # The switch sits below the visible part of the window: on the bus all the same.
    switch = (find_all(tessaline_app(), lambda n: n.name == "Start Tessaline at login"
                       and n.getRoleName() == "check box") or [None])[0]
    check(switch is not None and "checked" not in states(switch),
          "the start-at-login switch shows off")
    check(switch is not None and do_action(switch, "toggle"), "the switch has a toggle action")
    check(wait_until(lambda: os.path.isdir(autostart) and os.listdir(autostart), 5),
          "the switch's action writes the autostart entry")
    check(wait_until(lambda: "checked" in states(switch), 5), "the switch shows on")
    check(do_action(switch, "toggle") and wait_until(
          lambda: not (os.path.isdir(autostart) and os.listdir(autostart)), 5),
          "toggling again removes the autostart entry")

    # The HUD answers while the settings window stays open, and again over the browser.
    check(bool(visible_windows("^Tessaline Settings$")), "the settings window is still open")
    check(show_hud_over(editor_window), "the HUD opens over the editor with the settings open")
    check(act("Browse every saved shortcut"), '"Browse every saved shortcut" has an action')
    check(wait_until(lambda: visible_windows("^All Tessaline Shortcuts$"), 5),
          '"Browse every saved shortcut" opens the browser')
    # Going back to the editor closes the HUD, as a click outside Tessaline does.
    run("xdotool", "windowactivate", "--sync", editor_window)
    check(wait_until(lambda: not visible_windows("^Tessaline$"), 5),
          "the HUD closes when the editor comes forward")
    check(show_hud_over(editor_window), "the HUD opens with the browser open")
    check(act("Close"), '"Close" has an action with the browser open')
    check(wait_until(lambda: not visible_windows("^Tessaline$"), 5),
          '"Close" closes the HUD with the browser open')

    browser_window = wait_until(lambda: visible_windows("^All Tessaline Shortcuts$"), 5)
    check(bool(browser_window), "the browser stays open while the HUD comes and goes")
    if browser_window:
        run("xdotool", "windowactivate", "--sync", browser_window[0])
    set_clipboard("nothing copied")
    browser_row = wait_until(lambda: row_named("Lock screen, "), 5)
    check(browser_row is not None and do_action(browser_row, "press"),
          "a browser row has a press action")
    check(wait_until(lambda: clipboard() == "⌘ L", 5), "the browser row's press copies its chord")
    set_clipboard("nothing copied")
    copy = browser_row and find_all(browser_row, lambda n: n.name == "Copy shortcut")
    # The button describes itself with the chord as the row reads it out.
    check(bool(copy) and copy[0].description == browser_row.name[len("Lock screen, "):]
          and do_action(copy[0], "press"), "the browser row's copy button has a press action")
    check(wait_until(lambda: clipboard() == "⌘ L", 5), "the copy button copies the chord")
    check(act("Scan Open Apps"), '"Scan Open Apps" has an action')
    check(wait_until(lambda: shows("Scanned "), 30), '"Scan Open Apps" scans and says so')

    stop_tessaline(app)

    # Coach tips: the driver runs the application's tip controller, key monitor and panel, and
    # a media key pressed in the editor calls a tip up, as it would for the user.
    driver = subprocess.Popen([os.path.join(BUILD, "bin", "coach-tip-driver")], env=env,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        check(driver.stdout.readline().strip() == "monitoring", "the coach-tip driver monitors keys")
        run("xdotool", "windowactivate", "--sync", editor_window)
        run("xdotool", "key", "XF86AudioRaiseVolume")
        check(wait_until(lambda: visible_windows("^Tiny volume steps$"), 5),
              "volume up in the editor shows the volume tip")
        check(act("Not now", app_name="coach-tip-driver"), '"Not now" has an action')
        # The tip would close by itself after nine seconds; the button closes it at once.
        check(wait_until(lambda: not visible_windows("^Tiny volume steps$"), 3),
              '"Not now" closes the tip')
        check(default_value("CoachTip.dismissed.volume-precision") is not True,
              '"Not now" does not silence the tip for good')
        run("xdotool", "key", "XF86AudioPlay")
        check(wait_until(lambda: visible_windows("^Media keys are global$"), 5),
              "play in the editor shows the media tip")
        check(act("Don't show again", app_name="coach-tip-driver"),
              '"Don\'t show again" has an action')
        check(wait_until(lambda: not visible_windows("^Media keys are global$"), 3),
              '"Don\'t show again" closes the tip')
        check(wait_until(lambda: default_value("CoachTip.dismissed.media-keys") is True, 5),
              '"Don\'t show again" remembers the media tip as dismissed')
    finally:
        driver.terminate()
        driver.wait(10)

finally:
    stop_tessaline(app)
    editor.kill()
    shutil.rmtree(home, ignore_errors=True)

check.finish()
