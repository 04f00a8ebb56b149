#!/usr/bin/python3
"""Tessaline in a Wayland session with no X server: it sees which application is in front and
which run through the accessibility bus, shows the HUD for the application the user was in,
and scans native Wayland applications' menus.

Runs inside scripts/wayland-session (headless sway, no XWayland). The two applications are
native Wayland clients: mousepad (GTK 3) and the Qt test application. Focus moves between them
the way a user's click would move it, through the compositor (swaymsg).
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (bus_name_owned, control, find_all, run, stop_tessaline,  # noqa: E402
                             tessaline_app, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
VAULT = os.path.join(BUILD, "bin", "tessaline-vault")
QT_APP = os.path.join(BUILD, "bin", "scan_qt_menu_app")
SHOTS = os.environ.get("TESSALINE_SCREENSHOT_DIR")
failures = []
passes = []


def check(condition, what):
    print(("PASS " if condition else "FAIL ") + what, flush=True)
    (passes if condition else failures).append(what)


def sway_app_ids():
    tree = run("swaymsg", "-t", "get_tree").stdout
    return [line.split('"')[3] for line in tree.splitlines() if '"app_id": "' in line]


def focus(app_id):
    return run("swaymsg", f'[app_id="{app_id}"] focus').returncode == 0


def hud_frames():
    app = tessaline_app()
    if app is None:
        return []
    return [app.getChildAtIndex(i) for i in range(app.childCount)
            if app.getChildAtIndex(i) is not None and app.getChildAtIndex(i).name == "Tessaline"]


def hud_shows(app_name):
    """The HUD is open and its header names `app_name`."""
    for frame in hud_frames():
        if find_all(frame, lambda n: n.name == app_name and n.getRoleName() in ("label", "static")):
            return True
    return False


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

    tessaline = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE, text=True)
    check(wait_until(bus_name_owned, 20), "Tessaline starts on Wayland and owns its bus name")

    for app_id, name in (("mousepad", "Mousepad"), ("scan_qt_menu_app", "scan_qt_menu_app")):
        check(focus(app_id), f"the compositor focuses {name}")
        control("ShowHUD")
        shown = wait_until(lambda: hud_shows(name), 10)
        check(shown, f"the HUD opened over {name} is for {name}")
        if app_id == "mousepad":
            screenshot("wayland-hud-mousepad.png")
        control("ToggleHUD")
        wait_until(lambda: not hud_frames(), 5)

    scanned = run(VAULT, "scan", "--bundle-id", "org.xfce.mousepad", env=env, timeout=120)
    check(scanned.returncode == 0 and "shortcuts for Mousepad" in scanned.stdout,
          "scanning native Wayland mousepad finds its menu shortcuts: %r" % scanned.stdout.strip())
    rows = run(VAULT, "sections", "--bundle-id", "org.xfce.mousepad", "--app", "Mousepad",
               env=env).stdout
    check("Close Window\tFile" in rows, "the scan kept mousepad's File > Close Window")

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
    shutil.rmtree(home, ignore_errors=True)

print(f"{len(passes)} passed, {len(failures)} failed")
sys.exit(1 if failures else 0)
