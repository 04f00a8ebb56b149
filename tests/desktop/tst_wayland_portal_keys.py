#!/usr/bin/python3
"""Typed keys in a Wayland session through the desktop portal's remote-desktop session: the real
xdg-desktop-portal frontend, pointed at the test backend portal_remote_desktop_backend.py,
starts Tessaline's keyboard session the first time a key is to be typed (never at start); the
backend types every chord it is sent into the compositor. Until the session runs, a helper's
text stays on the clipboard and the HUD says so. Then a text helper's exact text reaches a field
that offers no editable text (so only the paste chord can bring it there) and the clipboard
holds its old text again afterwards; a curated row run from the HUD with Ctrl+Return types its
chord into the application the HUD was over; a user who refuses the session gets the text left
on the clipboard and the HUD's line saying so.

Runs inside scripts/wayland-session (headless sway, no X server), as the session's user.
"""
import json
import os
import subprocess
import sys
import tempfile
import time

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, control, end_session, find_all, hud_frames,  # noqa: E402
                             mousepad_text, press, run, stop_tessaline, sway_app_ids, sway_focus,
                             tessaline_app, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
VAULT = os.path.join(BUILD, "bin", "tessaline-vault")
FIELD_APP = os.path.join(BUILD, "bin", "plain_key_field")
HERE = os.path.dirname(os.path.abspath(__file__))
BACKEND_NAME = "org.freedesktop.impl.portal.desktop.tessalinetest"
NOT_TYPED = ("Tessaline could not type into this app: the text is on the clipboard, press Ctrl+V "
             "to paste it.")
DIVIDER = "\n" + "-" * 30 + "\n"
check = Checks()


def backend(method, *args):
    """Calls the test backend's control interface; the reply's text, or None on an error."""
    result = run("gdbus", "call", "--session", "--dest", BACKEND_NAME, "--object-path",
                 "/org/freedesktop/portal/desktop", "--method",
                 "org.tessaline.test.RemoteDesktopBackend." + method, *args)
    return result.stdout.strip() if result.returncode == 0 else None


def backend_list(method):
    """A list of strings from the backend, e.g. ['Control_L:1', 'v:1', ...]."""
    reply = backend(method)
    if reply is None:
        return None
    body = reply.strip("(),").replace("@as", "").strip(" []")
    return [item.strip(" '") for item in body.split(",")] if body else []


def backend_count(method):
    reply = backend(method)  # "(uint32 3,)"
    return int(reply.split()[-1].rstrip(",)")) if reply else 0


def portal_serves_keys():
    return run("gdbus", "call", "--session", "--dest", "org.freedesktop.portal.Desktop",
               "--object-path", "/org/freedesktop/portal/desktop", "--method",
               "org.freedesktop.DBus.Properties.Get", "org.freedesktop.portal.RemoteDesktop",
               "version").returncode == 0


def hud_active():
    return any(f.getState().contains(pyatspi.STATE_ACTIVE) for f in hud_frames())


def open_hud(app_id):
    sway_focus(app_id)
    time.sleep(0.3)
    control("ShowHUD")
    # As a user would, act once the HUD has the keyboard focus, and after a key went to it: a
    # Wayland client may set the clipboard only with the serial of an input event it received,
    # which a user's click or key gives and an assistive tool's action does not.
    active = wait_until(hud_active, 10)
    wtype("-k", "Shift_L")
    time.sleep(0.2)
    return active


def shows_line(text):
    app = tessaline_app()
    return bool(app) and bool(find_all(app, lambda n: n.name == text and
                                       n.getState().contains(pyatspi.STATE_SHOWING)))


def field_text():
    with open(FIELD_OUT, encoding="utf-8") as f:
        return f.read()


def clipboard():
    return run("wl-paste", "--no-newline", env=env).stdout


def wtype(*args):
    return run("wtype", *args, env=env).returncode == 0


def start_tessaline():
    app = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL, stderr=log)
    check(wait_until(bus_name_owned, 20), "Tessaline starts and owns its bus name")
    return app


home = tempfile.mkdtemp(prefix="tessaline-portal-keys-")
FIELD_OUT = os.path.join(home, "field.txt")
portals = os.path.join(home, "portals")
os.makedirs(portals)
with open(os.path.join(portals, "tessaline-test.portal"), "w") as f:
    f.write("[portal]\nDBusName=%s\nInterfaces=org.freedesktop.impl.portal.RemoteDesktop;\n"
            "UseIn=%s\n" % (BACKEND_NAME, os.environ.get("XDG_CURRENT_DESKTOP", "sway")))
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
           QT_QPA_PLATFORM="wayland", GDK_BACKEND="wayland", NO_AT_BRIDGE="0",
           QT_LOGGING_RULES="tessaline.portal.keys.debug=true;tessaline.portal.keys.info=true")
env.pop("DISPLAY", None)
# A user who has been through the welcome window, with a curated row of the field's that only
# its chord can run.
os.makedirs(home + "/.config/Tessaline")
os.makedirs(home + "/.local/share/Tessaline")
with open(home + "/.config/Tessaline/defaults.json", "w") as f:
    json.dump({"Onboarding.completed": {"type": "bool", "value": True}}, f)
with open(home + "/.local/share/Tessaline/keybinds.json", "w", encoding="utf-8") as f:
    json.dump({"global": [], "apps": [{"bundleID": "plain_key_field", "name": "plain_key_field",
                                       "shortcuts": [{"name": "Mark the line", "chord": "⌃ K"}]}]},
              f, ensure_ascii=False)
run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
    "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>")

helpers = []
tessaline = None
log = open(os.path.join(home, "tessaline.log"), "w")
try:
    # The backend first, then the real frontend, which finds it through the .portal file.
    helpers.append(subprocess.Popen(["/usr/bin/python3", os.path.join(HERE, "portal_remote_desktop_backend.py"),
                                     BACKEND_NAME], stdout=log, stderr=log, env=env))
    check(wait_until(lambda: backend("StartCount") is not None, 10), "the test backend is on the bus")
    helpers.append(subprocess.Popen(["/usr/libexec/xdg-desktop-portal", "--replace"],
                                    env=dict(os.environ, XDG_DESKTOP_PORTAL_DIR=portals),
                                    stdout=log, stderr=log))
    check(wait_until(portal_serves_keys, 20), "the portal frontend serves remote desktop")

    helpers.append(subprocess.Popen(["mousepad", "--disable-server"], env=env,
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
    helpers.append(subprocess.Popen([FIELD_APP, FIELD_OUT], env=env, stdout=subprocess.DEVNULL,
                                    stderr=subprocess.DEVNULL))
    check(wait_until(lambda: {"mousepad", "plain_key_field"} <= set(sway_app_ids()), 20),
          "mousepad and the plain field run as native Wayland clients")
    listed = wait_until(lambda: "plain_key_field" in run(VAULT, "apps", env=env).stdout, 20)
    check(listed, "the field is known as plain_key_field: %r" % run(VAULT, "apps", env=env).stdout)

    # Nobody is asked at start: the desktop's question comes with the first key to type.
    tessaline = start_tessaline()
    time.sleep(2)
    check(backend_count("StartCount") == 0, "starting Tessaline asks the desktop nothing")
    check(open_hud("plain_key_field"), "the HUD opens over the plain field")
    check(wait_until(lambda: press("Insert Bullet"), 5), '"Insert Bullet" has an action')
    check(wait_until(lambda: backend_count("StartCount") == 1, 15),
          "the first text for a field without editable text asks for the keyboard session")
    check(backend_list("Requests") == ["1 0"],
          "it asks for a keyboard only; this frontend (interface version 1) keeps no permission: %r"
          % backend_list("Requests"))
    check(wait_until(lambda: clipboard() == "\u2022 ", 5),
          "while the desktop asks, that text is left on the clipboard: %r" % clipboard())
    check(field_text() == "", "and nothing reached the field: %r" % field_text())
    check(open_hud("plain_key_field"), "the next HUD opens")
    check(wait_until(lambda: shows_line(NOT_TYPED), 10), "the HUD says the text is on the clipboard")
    control("ToggleHUD")

    # With the session granted, a helper's text reaches the field through the paste chord.
    clipboard_owner = subprocess.Popen(["wl-copy", "--foreground", "kept on the clipboard"],
                                       env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    helpers.append(clipboard_owner)
    check(wait_until(lambda: clipboard() == "kept on the clipboard", 5), "the clipboard holds a text")
    typed = ""
    for title, text in (("Insert Bullet", "\u2022 "), ("Insert Divider", DIVIDER)):
        check(open_hud("plain_key_field"), f"the HUD opens over the plain field for {title}")
        keys_before = len(backend_list("Keysyms") or [])
        pressed_at = time.monotonic()
        check(wait_until(lambda: press(title), 5), f'"{title}" has an action')
        typed += text
        check(wait_until(lambda: field_text() == typed, 5),
              f'"{title}" pastes its exact text into the plain field: {field_text()!r}')
        check((backend_list("Keysyms") or [])[keys_before:] ==
              ["Control_L:1", "v:1", "v:0", "Control_L:0"],
              "the paste went to the desktop as Control, v: %r" % (backend_list("Keysyms") or [])[keys_before:])
        restored = wait_until(lambda: clipboard() == "kept on the clipboard", 5, step=0.02)
        print("clipboard back %.2f s after the press" % (time.monotonic() - pressed_at), flush=True)
        check(restored, "the clipboard holds its old text again after the paste")

    # A field with editable text still gets the text straight from the accessibility bus: no
    # key goes to the desktop and the clipboard is left alone.
    check(open_hud("mousepad"), "the HUD opens over mousepad")
    keys_before = len(backend_list("Keysyms") or [])
    check(wait_until(lambda: press("Insert Bullet"), 5), '"Insert Bullet" has an action')
    check(wait_until(lambda: mousepad_text() == "\u2022 ", 5),
          "mousepad's text view takes the bullet directly: %r" % mousepad_text())
    time.sleep(1)
    check(backend_list("Keysyms")[keys_before:] == [], "no key went to the desktop for it")
    check(clipboard() == "kept on the clipboard", "the clipboard was left alone")

    # A curated row's chord reaches the application the HUD was over: the field's Mark row types
    # Ctrl+K, which the field writes down. (The field stands in for an editor here: GTK
    # applications drop the chords the backend types, each from a virtual keyboard of its own.)
    check(open_hud("plain_key_field"), "the HUD opens over the plain field for its row")
    keys_before = len(backend_list("Keysyms") or [])
    wtype("-d", "20", "mark the line")
    time.sleep(0.5)
    wtype("-k", "Down", "-M", "ctrl", "-k", "Return", "-m", "ctrl")
    check(wait_until(lambda: not hud_frames(), 5), "Ctrl+Return closes the HUD")
    check(wait_until(lambda: (backend_list("Keysyms") or [])[keys_before:] ==
                     ["Control_L:1", "k:1", "k:0", "Control_L:0"], 5),
          "the row's chord went to the desktop as Control, k: %r"
          % (backend_list("Keysyms") or [])[keys_before:])
    typed += "[Ctrl+K]"
    check(wait_until(lambda: field_text() == typed, 5),
          "the curated row's Ctrl+K reached the field: %r" % field_text())
    check(tessaline.poll() is None, "Tessaline is still running")

    # A user who refuses the session at the next start: the text stays on the clipboard and the
    # next HUD says so; nothing reaches the field.
    stop_tessaline(tessaline)
    check(wait_until(lambda: backend_count("LiveSessions") == 0, 10),
          "quitting Tessaline ends its keyboard session")
    backend("SetRefusing", "true")
    tessaline = start_tessaline()
    check(open_hud("plain_key_field"), "the HUD opens over the plain field once more")
    check(wait_until(lambda: press("Insert Checklist"), 5), '"Insert Checklist" has an action')
    check(wait_until(lambda: backend_count("StartCount") == 2, 15),
          "after a restart the first text asks again")
    check(backend_list("Restores") == ["", ""],
          "without a persisting interface no restore token is passed: %r" % backend_list("Restores"))
    check(wait_until(lambda: clipboard() == "\u2610 ", 5),
          "the refused session leaves the helper's text on the clipboard: %r" % clipboard())
    time.sleep(1.2)
    check(clipboard() == "\u2610 ", "the text is still on the clipboard after 0.8 s")
    check(field_text() == typed, "nothing reached the plain field: %r" % field_text())
    check(open_hud("plain_key_field"), "the next HUD opens")
    check(wait_until(lambda: shows_line(NOT_TYPED), 10), "the HUD says the text is on the clipboard")
    control("ToggleHUD")
    check(tessaline.poll() is None, "Tessaline is still running")
finally:
    end_session(tessaline, helpers, log, home, check)

check.finish()
