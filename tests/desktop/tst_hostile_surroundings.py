#!/usr/bin/python3
"""A running Tessaline survives what its surroundings do to it, without a restart.

Runs inside scripts/desktop-session. Against one Tessaline process:
  - the X server's keyboard mapping changes (the hotkey's key moves to another keycode, then
    the layout is replaced): the hotkey keeps showing the HUD;
  - an application whose menus hold 50,000 items is scanned: the scan ends, within the
    reader's element limit, and Tessaline answers its control interface afterwards;
  - an application is killed in the middle of its scan: Tessaline keeps running, the scan
    ends with a status message, and the next scan of another application works;
  - the accessibility bus and its registry are stopped and started again: the next scan works.
"""
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, control, run, set_accessibility,  # noqa: E402
                             stop_tessaline, visible_windows, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
QT_APP = os.path.join(BUILD, "bin", "scan_qt_menu_app")
HOTKEY = "ctrl+alt+super+k"
BIG_MENU_ITEMS = 50000
check = Checks()


home = tempfile.mkdtemp(prefix="tessaline-hostile-")
log_path = os.path.join(home, "tessaline.log")
vault_path = home + "/.local/share/Tessaline/keybinds.json"
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
           QT_MESSAGE_PATTERN="%{type} %{category}: %{message}",
           QT_LOGGING_RULES="tessaline.hud.timing.debug=true\ntessaline.scan.debug=true\n"
                            "tessaline.atspi.debug=true\ntessaline.tracker.timing.debug=true")
os.makedirs(home + "/.config/Tessaline")
with open(home + "/.config/Tessaline/defaults.json", "w") as f:
    json.dump({"Onboarding.completed": {"type": "bool", "value": True},
               "Hotkey.enabled": {"type": "bool", "value": True}}, f)

started = []  # every process this test started, stopped at the end


def start(args, **kwargs):
    process = subprocess.Popen(args, env=env, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, **kwargs)
    started.append(process)
    return process


def window_of(process):
    found = wait_until(lambda: run("xdotool", "search", "--onlyvisible", "--pid",
                                   str(process.pid)).stdout.split(), 20)
    return found[-1] if found else None


def log_text():
    with open(log_path, encoding="utf-8", errors="replace") as f:
        return f.read()


def statuses():
    return re.findall(r"scan finished: (.*)", log_text())


def app_in_front():
    """The bundle id the tracker last named as the app in front."""
    named = re.findall(r"app in front (\S+) at", log_text())
    return named[-1] if named else None


def scan_current(window, bundle):
    """Brings `window` to the front, waits until Tessaline's tracker names its app `bundle` (the
    window manager's change reaches it apart from the bus request), asks for a scan of its app
    and returns the status message the scan ended with (None when it did not end)."""
    run("xdotool", "windowactivate", "--sync", window)
    if not wait_until(lambda: app_in_front() == bundle, 10, 0.05):
        return "the tracker did not follow the focus to %s (it names %s)" % (bundle,
                                                                          app_in_front())
    before = len(statuses())
    scans = len(scans_over())
    control("ScanCurrentApp")
    if not wait_until(lambda: len(statuses()) > before, 120, 0.05):
        return None
    wait_for_hud_after_scan(scans)
    return statuses()[before]


def hud_frames():
    return log_text().count("first frame")


def tessaline_in_front():
    active = run("xdotool", "getactivewindow").stdout.strip()
    return bool(active) and run("xdotool", "getwindowpid", active).stdout.strip() == str(
        tessaline.pid)


def scans_over():
    return re.findall(r"scan over with the HUD (\w+)", log_text())


def wait_for_hud_after_scan(scans):
    """A scan of the current app ends by bringing the HUD up (unless it is open already) and
    giving it the focus. Waits until it has the focus, so that the window the test activates
    next is not raced by the HUD taking the focus right after it (the window manager's two
    changes then reach the tracker as one, and it never sees that window in front)."""
    if not wait_until(lambda: len(scans_over()) > scans, 10, 0.05):
        check(False, "the scan's end reaches the HUD")
    elif scans_over()[scans] == "hidden":
        check(wait_until(tessaline_in_front, 10, 0.05), "the HUD comes up in front after the scan")


def hud_shows_after(keys):
    """Presses `keys` and tells whether the HUD came up; closes it again."""
    before = hud_frames()
    run("xdotool", "key", keys)
    shown = wait_until(lambda: hud_frames() > before, 3, 0.05)
    if shown:
        run("xdotool", "key", "Escape")
        wait_until(lambda: not visible_windows("^Tessaline$"), 5)
    return bool(shown)


def keycode_of(keysym):
    for line in run("xmodmap", "-pke").stdout.splitlines():
        fields = line.split()
        if len(fields) > 3 and fields[3] == keysym:
            return int(fields[1])
    return None


def answers():
    """Tessaline still runs and answers its control interface."""
    if tessaline.poll() is not None or not bus_name_owned():
        return False
    return control("ShowHUD").returncode == 0 and hud_closed_after_show()


def hud_closed_after_show():
    if not wait_until(lambda: visible_windows("^Tessaline$"), 5):
        return False
    run("xdotool", "key", "Escape")
    return bool(wait_until(lambda: not visible_windows("^Tessaline$"), 5))


def bus_pid(name, address=None):
    where = ["--address", address] if address else ["--session"]
    result = run("gdbus", "call", *where, "--dest", "org.freedesktop.DBus", "--object-path",
                 "/org/freedesktop/DBus", "--method",
                 "org.freedesktop.DBus.GetConnectionUnixProcessID", name)
    match = re.search(r"uint32 (\d+)", result.stdout)
    return int(match.group(1)) if match else None


def process_tree(pid):
    """`pid` and every process below it."""
    children = {}
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open("/proc/%s/stat" % entry) as f:
                # The fields after the command name, which may hold spaces, in parentheses.
                parent = int(f.read().rsplit(")", 1)[1].split()[1])
        except (OSError, IndexError, ValueError):
            continue
        children.setdefault(parent, []).append(int(entry))
    tree, pending = [], [pid]
    while pending:
        current = pending.pop()
        tree.append(current)
        pending.extend(children.get(current, []))
    return tree


def accessibility_bus_owned():
    """Whether the accessibility bus launcher runs (asked without starting it: the session bus
    would start a launcher for a call addressed to it)."""
    result = run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                 "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.NameHasOwner",
                 "org.a11y.Bus")
    return "true" in result.stdout


set_accessibility(True)
editor = start(["mousepad", "--disable-server"])
editor_window = window_of(editor)
tessaline = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL,
                             stderr=open(log_path, "w"))
restarted_launcher = None
original_mapping = None
try:
    check(wait_until(bus_name_owned, 30), "Tessaline starts")
    run("xdotool", "windowactivate", "--sync", editor_window)
    time.sleep(0.5)

    # --- The keyboard mapping changes under the grabbed hotkey. -----------------------------
    check(hud_shows_after(HOTKEY), "the hotkey shows the HUD")
    k_code, x_code = keycode_of("k"), keycode_of("x")
    check(k_code is not None and x_code is not None, "the keyboard has K and X")
    if k_code is not None and x_code is not None:
        original_mapping = (k_code, x_code)
        # K moves to X's key and back: the grab on the old keycode would now answer X.
        run("xmodmap", "-e", "keycode %d = x X" % k_code, "-e", "keycode %d = k K" % x_code)
        check(wait_until(lambda: keycode_of("k") == x_code, 5), "K now sits on another key")
        time.sleep(0.5)
        check(hud_shows_after(HOTKEY), "the hotkey shows the HUD after K moved to another key")
        check(not hud_shows_after("ctrl+alt+super+x"),
              "the key K left no longer shows the HUD")
        run("xmodmap", "-e", "keycode %d = k K" % k_code, "-e", "keycode %d = x X" % x_code)
        original_mapping = None
        check(wait_until(lambda: keycode_of("k") == k_code, 5), "K is back on its key")
        time.sleep(0.5)
        check(hud_shows_after(HOTKEY), "the hotkey shows the HUD once K is back")
    # A new layout replaces the whole keymap.
    run("setxkbmap", "de")
    time.sleep(0.5)
    check(hud_shows_after(HOTKEY), "the hotkey shows the HUD under a German layout")
    run("setxkbmap", "us")
    time.sleep(0.5)
    check(hud_shows_after(HOTKEY), "the hotkey shows the HUD back under a US layout")

    # --- An application with 50,000 menu items. ---------------------------------------------
    big = start([QT_APP, "--items", str(BIG_MENU_ITEMS)])
    big_window = window_of(big)
    check(big_window is not None, "the application with 50,000 menu items opens")
    status = scan_current(big_window, "scan_qt_menu_app")
    check(status is not None and re.match(
        r"(Added \d+ of \d+ discovered|Found \d+) shortcuts? for scan_qt_menu_app", status),
        "the scan of 50,000 menu items ends: %s" % status)
    with open(vault_path) as f:
        packs = [p for p in json.load(f)["apps"] if p.get("bundleID") == "scan_qt_menu_app"]
    volumes = [s for s in (packs[0]["shortcuts"] if packs else [])
               if s["name"].startswith("Volume ")]
    # One item in a hundred carries a shortcut; the reader stops at its element limit.
    check(0 < len(volumes) < BIG_MENU_ITEMS // 100,
          "the scan read up to its element limit: %d of %d shortcuts"
          % (len(volumes), BIG_MENU_ITEMS // 100))
    check(answers(), "Tessaline answers its control interface after the big scan")

    # --- An application killed in the middle of its scan. -----------------------------------
    run("xdotool", "windowactivate", "--sync", big_window)
    before = len(statuses())
    scans = len(scans_over())
    control("ScanCurrentApp")
    time.sleep(0.3)
    big.kill()
    big.wait()
    check(wait_until(lambda: len(statuses()) > before, 60, 0.05),
          "the scan of a killed application ends")
    wait_for_hud_after_scan(scans)
    ended = statuses()[before] if len(statuses()) > before else None
    check(bool(ended) and "scan_qt_menu_app" in ended,
          "it ends with a status message: %s" % ended)
    check(tessaline.poll() is None, "Tessaline keeps running after the application was killed")
    status = scan_current(editor_window, "org.xfce.mousepad")
    check(status is not None and re.match(r"(Added \d+ of \d+ discovered|Found \d+) shortcuts? "
                                          r"for Mousepad", status),
          "the next scan, of Mousepad, works: %s" % status)

    # --- The accessibility bus restarts. ----------------------------------------------------
    launcher = bus_pid("org.a11y.Bus")
    check(launcher is not None, "the accessibility bus launcher is found")
    if launcher is not None:
        # The launcher, its bus daemon and the registry the daemon started.
        for pid in process_tree(launcher):
            try:
                os.kill(pid, signal.SIGTERM)
            except ProcessLookupError:
                pass
        check(wait_until(lambda: not accessibility_bus_owned(), 10),
              "the accessibility bus is gone")
        launcher_path = next(p for p in ("/usr/libexec/at-spi-bus-launcher",
                                         "/usr/lib/at-spi2-core/at-spi-bus-launcher")
                             if os.access(p, os.X_OK))
        restarted_launcher = subprocess.Popen([launcher_path, "--launch-immediately"],
                                              stdout=subprocess.DEVNULL,
                                              stderr=subprocess.DEVNULL, start_new_session=True)
        check(wait_until(accessibility_bus_owned, 10), "the accessibility bus is back")
        set_accessibility(True)
        check(tessaline.poll() is None, "Tessaline keeps running while the bus restarts")
        # Applications join the new bus when they start.
        fresh = start([QT_APP])
        fresh_window = window_of(fresh)
        time.sleep(1)
        status = scan_current(fresh_window, "scan_qt_menu_app")
        check(status is not None and re.match(
            r"(Added \d+ of \d+ discovered|Found \d+) shortcuts? for scan_qt_menu_app", status),
            "the next scan after the bus restarted works: %s" % status)
        check(answers(), "Tessaline answers its control interface after the bus restarted")

    log = log_text()
    warnings = [line for line in log.splitlines() if re.match(r"(critical|fatal) ", line)]
    check(not warnings, "no critical message in the log: %s" % warnings[:5])
finally:
    if original_mapping is not None:
        k_code, x_code = original_mapping
        run("xmodmap", "-e", "keycode %d = k K" % k_code, "-e", "keycode %d = x X" % x_code)
    stop_tessaline(tessaline)
    for process in started:
        process.kill()
        process.wait()
    if restarted_launcher is not None:
        os.killpg(restarted_launcher.pid, signal.SIGTERM)
        restarted_launcher.wait()
    if os.environ.get("TESSALINE_HOSTILE_LOG"):
        shutil.copy(log_path, os.environ["TESSALINE_HOSTILE_LOG"])
    shutil.rmtree(home, ignore_errors=True)

check.finish()
