#!/usr/bin/python3
"""Tessaline in a Wayland session with no X server: it sees which application is in front and
which run through the accessibility bus and the compositor's window list, shows the HUD for
the application the user was in, types the helpers' text into the focused field without
touching the clipboard, and scans native Wayland applications' menus.

Runs inside scripts/wayland-session (headless sway, no XWayland). The applications are native
Wayland clients: mousepad (GTK 3), the Qt test application and the foot terminal, which is not
on the accessibility bus. Focus moves between them the way a user's click would move it,
through the compositor (swaymsg).
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, control, find_all, hud_frames,  # noqa: E402
                             mousepad_text, mousepad_texts, press, run, stop_tessaline,
                             sway_app_ids, sway_focus, tessaline_app, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
VAULT = os.path.join(BUILD, "bin", "tessaline-vault")
QT_APP = os.path.join(BUILD, "bin", "scan_qt_menu_app")
FIELD_APP = os.path.join(BUILD, "bin", "plain_key_field")
SHOTS = os.environ.get("TESSALINE_SCREENSHOT_DIR")
check = Checks()


def hud_shows(app_name):
    """The HUD is open and its header names `app_name`."""
    for frame in hud_frames():
        if find_all(frame, lambda n: n.name == app_name and n.getRoleName() in ("label", "static")):
            return True
    return False


def editor_selection():
    """The (start, end, length) of the first selection in mousepad's editor, if any."""
    for text in mousepad_texts():
        try:
            if text.getNSelections() > 0:
                start, end = text.getSelection(0)
                return start, end, text.characterCount
            return None
        except Exception:
            continue
    return None


def editor_caret():
    """Where the caret is in mousepad's editor."""
    for text in mousepad_texts():
        try:
            return text.caretOffset
        except Exception:
            continue
    return None


def text_of(path):
    """What the plain field wrote down, if anything yet."""
    try:
        with open(path, encoding="utf-8") as f:
            return f.read()
    except OSError:
        return None


def screenshot(name):
    if SHOTS:
        os.makedirs(SHOTS, exist_ok=True)
        run("grim", os.path.join(SHOTS, name))


home = tempfile.mkdtemp(prefix="tessaline-wayland-")
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
           QT_QPA_PLATFORM="wayland", GDK_BACKEND="wayland", NO_AT_BRIDGE="0")
env.pop("DISPLAY", None)
# A user who has been through the welcome window: only the HUD opens.
os.makedirs(home + "/.config/Tessaline")
with open(home + "/.config/Tessaline/defaults.json", "w") as f:
    json.dump({"Onboarding.completed": {"type": "bool", "value": True}}, f)
run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
    "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>")
apps = []
tessaline = None
try:
    check("DISPLAY" not in os.environ and bool(os.environ.get("WAYLAND_DISPLAY")),
          "the session is Wayland only (no X display)")
    apps.append(subprocess.Popen(["mousepad", "--disable-server"], env=env, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL))
    apps.append(subprocess.Popen([QT_APP], env=env, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL))
    check(wait_until(lambda: {"mousepad", "scan_qt_menu_app"} <= set(sway_app_ids()), 20),
          "mousepad and the Qt application run as native Wayland clients")

    listed = wait_until(lambda: (lambda out: "org.xfce.mousepad" in out and "scan_qt_menu_app" in out)(
        run(VAULT, "apps", env=env).stdout) and run(VAULT, "apps", env=env).stdout, 20)
    check(bool(listed), "tessaline-vault apps lists both applications: %r" % listed)

    # A terminal that is not on the accessibility bus is seen through the compositor's window
    # list.
    apps.append(subprocess.Popen(["foot", "sleep", "600"], env=env, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL))
    check(wait_until(lambda: "foot" in sway_app_ids(), 20), "foot runs as a native Wayland client")
    check(tessaline_app("foot") is None, "foot is not on the accessibility bus")
    listed = wait_until(lambda: (lambda out: "Foot\tfoot\n" in out and out)(
        run(VAULT, "apps", env=env).stdout), 10)
    check(bool(listed), "tessaline-vault apps lists foot from the window list: %r" % listed)

    log = open(os.path.join(home, "tessaline.log"), "w")
    tessaline = subprocess.Popen([TESSALINE], env=dict(env, QT_LOGGING_RULES="tessaline.atspi.debug=true"),
                                 stdout=subprocess.DEVNULL, stderr=log)
    check(wait_until(bus_name_owned, 20), "Tessaline starts on Wayland and owns its bus name")

    for app_id, name in (("mousepad", "Mousepad"), ("scan_qt_menu_app", "scan_qt_menu_app"),
                         ("foot", "Foot")):
        check(sway_focus(app_id), f"the compositor focuses {name}")
        control("ShowHUD")
        shown = wait_until(lambda: hud_shows(name), 10)
        check(shown, f"the HUD opened over {name} is for {name}")
        if app_id == "mousepad":
            screenshot("wayland-hud-mousepad.png")
        control("ToggleHUD")
        wait_until(lambda: not hud_frames(), 5)

    # The text helpers type straight into mousepad's text view and leave the clipboard alone.
    clipboard_owner = subprocess.Popen(["wl-copy", "--foreground", "kept on the clipboard"],
                                       env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    apps.append(clipboard_owner)
    typed = ""
    for title, text in (("Insert Bullet", "\u2022 "), ("Insert Checklist", "\u2610 "),
                        ("Insert Divider", "\n" + "-" * 30 + "\n"),
                        ("Paste Plain Text", "kept on the clipboard")):
        sway_focus("mousepad")
        control("ShowHUD")
        check(wait_until(lambda: hud_shows("Mousepad"), 10), f"the HUD opens for {title}")
        # As a user would, act once the HUD has the keyboard focus (and with it the clipboard).
        wait_until(lambda: any(f.getState().contains(pyatspi.STATE_ACTIVE) for f in hud_frames()), 5)
        check(wait_until(lambda: press(title), 5), f'"{title}" has an action')
        typed += text
        check(wait_until(lambda: mousepad_text() == typed, 5),
              f'"{title}" types its exact text into mousepad: {mousepad_text()!r}')
    check(run("wl-paste", "--no-newline", env=env).stdout == "kept on the clipboard",
          "the clipboard holds what it held before")

    # No global key can be taken here: the settings say what to bind instead.
    control("ShowSettings")
    hint = "The desktop gave Tessaline no global key: bind the command tessaline --toggle to " \
           "a key in the desktop's keyboard settings."
    check(wait_until(lambda: tessaline_app() is not None and find_all(
        tessaline_app(), lambda n: n.name == hint and n.getState().contains(pyatspi.STATE_SHOWING)), 10),
        "the settings say how to bind tessaline --toggle")
    screenshot("wayland-settings.png")

    scanned = run(VAULT, "scan", "--bundle-id", "org.xfce.mousepad", env=env, timeout=120)
    check(scanned.returncode == 0 and "shortcuts for Mousepad" in scanned.stdout,
          "scanning native Wayland mousepad finds its menu shortcuts: %r" % scanned.stdout.strip())
    rows = run(VAULT, "sections", "--bundle-id", "org.xfce.mousepad", "--app", "Mousepad",
               env=env).stdout
    check("Close Window\tFile" in rows, "the scan kept mousepad's File > Close Window")

    # A row without a menu path runs by typing its chord into the app, which the compositor
    # brings to the front; sway offers its virtual keyboard for the keys.
    check(editor_caret() not in (None, 0), "the caret is after the typed text: %r" % editor_caret())
    ran = run(VAULT, "run", "Go to the start", "Ctrl+Home", "--bundle-id", "org.xfce.mousepad",
              env=env, timeout=60)
    check(ran.returncode == 0, "a chord row runs on Wayland: %r" % ran.stderr)
    check(wait_until(lambda: editor_caret() == 0, 5),
          "its chord, typed through the virtual keyboard, moved mousepad's caret to the start: %r"
          % editor_caret())
    check("Select All\tEdit" in rows, "the scan kept mousepad's Edit > Select All")
    # mousepad greys out its editing items while its window is not the focused one.
    sway_focus("mousepad")
    time.sleep(0.5)
    ran = run(VAULT, "run", "Select All", "Ctrl+A", "--bundle-id", "org.xfce.mousepad",
              env=env, timeout=60)
    check(ran.returncode == 0, "run runs mousepad's Select All on Wayland: %r" % ran.stderr)
    selection = wait_until(lambda: (lambda s: s if s and s[0] == 0 and s[1] == s[2] > 0 else None)(
        editor_selection()), 5)
    check(bool(selection), "mousepad's whole text is selected through its menu item: %r"
          % (editor_selection(),))

    # A field that offers no editable text gets a helper's text pasted: on the clipboard, then
    # Ctrl+V from the compositor's virtual keyboard (sway has no remote-desktop portal), and the
    # clipboard's old text back afterwards.
    field_out = os.path.join(home, "field.txt")
    apps.append(subprocess.Popen([FIELD_APP, field_out], env=env, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL))
    check(wait_until(lambda: "plain_key_field" in sway_app_ids(), 20), "the plain field runs")
    check(run("wl-paste", "--no-newline", env=env).stdout == "kept on the clipboard",
          "the clipboard holds its text before the paste")
    sway_focus("plain_key_field")
    control("ShowHUD")
    check(wait_until(lambda: hud_shows("plain_key_field"), 10), "the HUD opens over the plain field")
    wait_until(lambda: any(f.getState().contains(pyatspi.STATE_ACTIVE) for f in hud_frames()), 5)
    # A Wayland client sets the clipboard only with the serial of an input event it received,
    # as a user's click or key gives it.
    run("wtype", "-k", "Shift_L", env=env)
    time.sleep(0.2)
    check(wait_until(lambda: press("Insert Bullet"), 5), '"Insert Bullet" has an action')
    check(wait_until(lambda: text_of(field_out) == "\u2022 ", 5),
          "the bullet is pasted into the plain field through the virtual keyboard: %r"
          % text_of(field_out))
    check(wait_until(lambda: run("wl-paste", "--no-newline", env=env).stdout ==
                     "kept on the clipboard", 5),
          "the clipboard holds what it held before after the paste")

    check(tessaline.poll() is None, "Tessaline is still running")
finally:
    if tessaline is not None and tessaline.poll() is None:
        stop_tessaline(tessaline)
    for app in apps:
        app.terminate()
    for app in apps:
        try:
            app.wait(5)
        except subprocess.TimeoutExpired:
            app.kill()
    if check.failures:
        print("Tessaline's log ends:\n" + "".join(open(os.path.join(home, "tessaline.log")).readlines()[-40:]))
    shutil.rmtree(home, ignore_errors=True)

check.finish()
