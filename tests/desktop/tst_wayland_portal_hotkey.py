#!/usr/bin/python3
"""The global hotkey in a Wayland session through the desktop portal's global shortcuts: the
real xdg-desktop-portal frontend, pointed at the test backend portal_shortcuts_backend.py, binds
the user's combination; the backend's Activated signal toggles the HUD; changing the hotkey in
the settings binds the new combination, disabling unbinds it, a restart binds again; a user who
declines, or a portal without global shortcuts, gets the settings' hint to bind
tessaline --toggle instead.

Runs inside scripts/wayland-session (headless sway, no X server), as the session's user.
"""
import json
import os
import subprocess
import sys
import tempfile

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, control, end_session, find_all, run,  # noqa: E402
                             stop_tessaline, tessaline_app, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
HERE = os.path.dirname(os.path.abspath(__file__))
BACKEND_NAME = "org.freedesktop.impl.portal.desktop.tessalinetest"
HINT = ("The desktop gave Tessaline no global key: bind the command tessaline --toggle to a "
        "key in the desktop's keyboard settings.")
check = Checks()


def backend(method, *args):
    """Calls the test backend's control interface; the reply's text, or None on an error."""
    result = run("gdbus", "call", "--session", "--dest", BACKEND_NAME, "--object-path",
                 "/org/freedesktop/portal/desktop", "--method",
                 "org.tessaline.test.ShortcutsBackend." + method, *args)
    return result.stdout.strip() if result.returncode == 0 else None


def triggers():
    """The triggers bound in the backend's live sessions, e.g. ['CTRL+SHIFT+s']."""
    reply = backend("Triggers")
    if reply is None:
        return None
    return [t.strip(" '") for t in reply.strip("(),[] ").replace("@as", "").split(",") if t.strip(" '")]


def bind_count():
    reply = backend("BindCount")  # "(uint32 3,)"
    return int(reply.split()[-1].rstrip(",)")) if reply else 0


def trigger(combination, pressed):
    reply = backend("Trigger", combination, "true" if pressed else "false")
    return reply is not None and reply != "(uint32 0,)"


def press_and_release(combination):
    return trigger(combination, True) and trigger(combination, False)


def hud_open():
    """The HUD's window is on the accessibility bus."""
    app = tessaline_app()
    if app is None:
        return False
    for i in range(app.childCount):
        try:
            frame = app.getChildAtIndex(i)
            if frame is not None and frame.name == "Tessaline":
                return True
        except Exception:  # windows close while they are read
            continue
    return False


def showing(predicate):
    app = tessaline_app()
    return bool(app) and bool(find_all(app, lambda n: predicate(n) and
                                       n.getState().contains(pyatspi.STATE_SHOWING)))


def hint_shown():
    return showing(lambda n: n.name == HINT)


def do_action(predicate, wanted):
    """Invokes the action `wanted` of the first showing control that `predicate` accepts."""
    app = tessaline_app()
    for node in find_all(app, predicate) if app else []:
        try:
            if not node.getState().contains(pyatspi.STATE_SHOWING):
                continue
            action = node.queryAction()
            for i in range(action.nActions):
                if action.getName(i).lower() == wanted:
                    return bool(action.doAction(i))
        except Exception:
            continue
    return False


def portal_call(*method):
    return run("gdbus", "call", "--session", "--dest", "org.freedesktop.portal.Desktop",
               "--object-path", "/org/freedesktop/portal/desktop", "--method", *method)


def portal_serves_shortcuts():
    return portal_call("org.freedesktop.DBus.Properties.Get",
                       "org.freedesktop.portal.GlobalShortcuts", "version").returncode == 0


def portal_running():
    return portal_call("org.freedesktop.DBus.Peer.Ping").returncode == 0


def start_tessaline(env, log):
    app = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL, stderr=log)
    check(wait_until(bus_name_owned, 20), "Tessaline starts and owns its bus name")
    return app


home = tempfile.mkdtemp(prefix="tessaline-portal-")
portals = os.path.join(home, "portals")
os.makedirs(portals)
with open(os.path.join(portals, "tessaline-test.portal"), "w") as f:
    f.write("[portal]\nDBusName=%s\nInterfaces=org.freedesktop.impl.portal.GlobalShortcuts;\n"
            "UseIn=%s\n" % (BACKEND_NAME, os.environ.get("XDG_CURRENT_DESKTOP", "sway")))
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
           QT_QPA_PLATFORM="wayland", QT_LOGGING_RULES="tessaline.hotkey.debug=true")
env.pop("DISPLAY", None)
# A user who has been through the welcome window and turned the hotkey on as Ctrl+Shift+S.
os.makedirs(home + "/.config/Tessaline")
with open(home + "/.config/Tessaline/defaults.json", "w") as f:
    json.dump({"Onboarding.completed": {"type": "bool", "value": True},
               "Hotkey.enabled": {"type": "bool", "value": True},
               "Hotkey.keyCode": {"type": "integer", "value": 1},
               "Hotkey.modifiers": {"type": "integer", "value": 0x1000 | 0x200}}, f)
run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
    "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>")

helpers = []
tessaline = None
log = open(os.path.join(home, "tessaline.log"), "w")
try:
    # The backend first, then the real frontend, which finds it through the .portal file.
    helpers.append(subprocess.Popen(["/usr/bin/python3", os.path.join(HERE, "portal_shortcuts_backend.py"),
                                     BACKEND_NAME], stdout=log, stderr=log))
    check(wait_until(lambda: backend("BindCount") is not None, 10), "the test backend is on the bus")
    helpers.append(subprocess.Popen(["/usr/libexec/xdg-desktop-portal", "--replace", "--verbose"],
                                    env=dict(os.environ, XDG_DESKTOP_PORTAL_DIR=portals),
                                    stdout=log, stderr=log))
    check(wait_until(portal_serves_shortcuts, 20), "the portal frontend serves global shortcuts")

    tessaline = start_tessaline(env, log)
    check(wait_until(lambda: triggers() == ["CTRL+SHIFT+s"], 15),
          "the user's Ctrl+Shift+S is bound as CTRL+SHIFT+s: %r" % triggers())

    # The desktop's presses toggle the HUD: open, then closed.
    check(not hud_open(), "the HUD is closed at first")
    check(press_and_release("CTRL+SHIFT+s"), "the backend delivers the bound shortcut")
    check(wait_until(hud_open, 10), "the shortcut's activation opens the HUD")
    check(press_and_release("CTRL+SHIFT+s"), "the backend delivers the shortcut again")
    check(wait_until(lambda: not hud_open(), 10), "a second activation closes the HUD")

    # The settings: no hint while the desktop grants the key.
    control("ShowSettings")
    recorder = lambda n: (n.name or "").startswith("Hotkey recorder: ")  # noqa: E731
    check(wait_until(lambda: showing(recorder), 10), "the settings show the recorder")
    check(not hint_shown(), "no hint to bind a command while the hotkey is bound")

    # Recording Ctrl+Alt+J binds it in place of Ctrl+Shift+S.
    check(do_action(recorder, "press"), "the recorder starts a recording")
    wait_until(lambda: showing(lambda n: recorder(n) and n.getState().contains(pyatspi.STATE_FOCUSED)), 5)
    typed = run("wtype", "-M", "ctrl", "-M", "alt", "j", "-m", "alt", "-m", "ctrl", env=env)
    check(typed.returncode == 0, "wtype types Ctrl+Alt+J: %s" % typed.stderr.strip())
    check(wait_until(lambda: triggers() == ["CTRL+ALT+j"], 15),
          "changing the hotkey binds CTRL+ALT+j alone: %r" % triggers())
    check(not trigger("CTRL+SHIFT+s", True), "the old combination is bound no more")
    check(press_and_release("CTRL+ALT+j"), "the new combination is delivered")
    check(wait_until(hud_open, 10), "the new combination opens the HUD")
    check(press_and_release("CTRL+ALT+j") and wait_until(lambda: not hud_open(), 10),
          "the new combination closes the HUD")

    # Leaving ends the session; starting again binds again.
    stop_tessaline(tessaline)
    check(wait_until(lambda: triggers() == [], 10), "quitting Tessaline unbinds its shortcut")
    tessaline = start_tessaline(env, log)
    check(wait_until(lambda: triggers() == ["CTRL+ALT+j"], 15),
          "a restart binds the saved CTRL+ALT+j again: %r" % triggers())

    # Disabling in the settings unbinds.
    control("ShowSettings")
    disable = lambda n: n.name == "Disable" and n.getRoleName() == "push button"  # noqa: E731
    check(wait_until(lambda: do_action(disable, "press"), 10), "the Disable button has a press action")
    check(wait_until(lambda: triggers() == [], 10), "disabling unbinds the shortcut: %r" % triggers())
    check(not trigger("CTRL+ALT+j", True), "the disabled combination reaches nobody")

    # A portal that leaves while the user has its dialog open: the request ends as refused.
    toggle = lambda n: n.name == "Enable custom HUD hotkey"  # noqa: E731

    def switch_hotkey(on, what):
        checked = lambda: any(pyatspi.STATE_CHECKED in n.getState().getStates()  # noqa: E731
                              for n in find_all(tessaline_app(), toggle))
        if checked() != on:
            do_action(toggle, "toggle") or do_action(toggle, "press")
        check(wait_until(lambda: checked() == on, 10), what)

    backend("SetHolding", "true")
    binds_before = bind_count()
    switch_hotkey(True, "the hotkey is turned on again in the settings")
    check(wait_until(lambda: bind_count() > binds_before, 10), "Tessaline asks the desktop to bind it")
    check(not hint_shown(), "no hint while the desktop has not answered")
    frontend = helpers.pop()
    frontend.terminate()
    frontend.wait(10)
    check(wait_until(hint_shown, 10), "the portal leaving unanswered ends with the hint")

    # The portal back and the user agreeing: turning the hotkey off and on binds it, no hint.
    backend("SetHolding", "false")
    helpers.append(subprocess.Popen(["/usr/libexec/xdg-desktop-portal", "--replace"],
                                    env=dict(os.environ, XDG_DESKTOP_PORTAL_DIR=portals),
                                    stdout=log, stderr=log))
    check(wait_until(portal_serves_shortcuts, 20), "the portal frontend is back")
    switch_hotkey(False, "the hotkey is turned off")
    switch_hotkey(True, "the hotkey is turned on")
    check(wait_until(lambda: triggers() == ["CTRL+ALT+j"], 15),
          "the returned portal binds CTRL+ALT+j: %r" % triggers())
    check(wait_until(lambda: not hint_shown(), 10), "a granted binding takes the hint away")

    # A user who declines: turning the hotkey on again ends with the hint, as on a desktop that
    # lets no app take a key.
    backend("SetDeclining", "true")
    switch_hotkey(False, "the hotkey is turned off again")
    binds_before = bind_count()
    switch_hotkey(True, "the hotkey is turned on once more")
    check(wait_until(lambda: bind_count() > binds_before, 10),
          "Tessaline asks the desktop to bind it")
    check(wait_until(hint_shown, 10), "after the refusal the settings say how to bind tessaline --toggle")
    check(triggers() == [], "nothing is bound after the refusal")
    if os.environ.get("TESSALINE_SCREENSHOT_DIR"):
        os.makedirs(os.environ["TESSALINE_SCREENSHOT_DIR"], exist_ok=True)
        run("grim", os.path.join(os.environ["TESSALINE_SCREENSHOT_DIR"], "wayland-portal-declined.png"))
    check(tessaline.poll() is None, "Tessaline is still running")

    # A portal without global shortcuts: Tessaline asks nothing and shows the hint at once.
    stop_tessaline(tessaline)
    tessaline = None
    empty = os.path.join(home, "no-portals")
    os.makedirs(empty)
    helpers.append(subprocess.Popen(["/usr/libexec/xdg-desktop-portal", "--replace"],
                                    env=dict(os.environ, XDG_DESKTOP_PORTAL_DIR=empty),
                                    stdout=log, stderr=log))
    check(wait_until(lambda: not portal_serves_shortcuts() and portal_running(), 20),
          "the replaced portal frontend serves no global shortcuts")
    binds_before = bind_count()
    tessaline = start_tessaline(env, log)
    control("ShowSettings")
    check(wait_until(hint_shown, 10), "without global shortcuts the settings show the hint")
    check(bind_count() == binds_before, "nothing was asked of the backend")
    check(tessaline.poll() is None, "Tessaline is still running")
finally:
    end_session(tessaline, helpers, log, home, check)

check.finish()
