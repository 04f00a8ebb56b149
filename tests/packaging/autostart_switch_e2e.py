#!/usr/bin/python3
"""The settings window's "Start Tessaline at login" switch, driven over the accessibility bus.

Runs inside scripts/desktop-session. Starts Tessaline at login (--autostart), opens its settings
over the session bus, finds the switch on the accessibility bus and runs its action the way a
screen reader does; checks the autostart entry is written and removed, and that the switch
follows the file when the user deletes it by hand.
"""
import json
import os
import subprocess
import sys
import tempfile
import time

import pyatspi

TESSALINE = os.path.join(os.environ["TESSALINE_BUILD_DIR"], "bin", "tessaline")
SWITCH = "Start Tessaline at login"
failures = []


def check(condition, what):
    print(("PASS " if condition else "FAIL ") + what, flush=True)
    if not condition:
        failures.append(what)


def run(*args):
    return subprocess.run(args, capture_output=True, text=True)


def wait_until(predicate, seconds=10.0):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = predicate()
        if value:
            return value
        time.sleep(0.1)
    return predicate()


def control(method):
    return run("gdbus", "call", "--session", "--dest", "org.tessaline.Tessaline",
               "--object-path", "/org/tessaline/Tessaline",
               "--method", "org.tessaline.Tessaline." + method).returncode == 0


def find_switch():
    desktop = pyatspi.Registry.getDesktop(0)
    for i in range(desktop.childCount):
        app = desktop.getChildAtIndex(i)
        if app is None or app.name.lower() != "tessaline":
            continue
        stack = [app]
        while stack:
            node = stack.pop()
            try:
                if node.name == SWITCH:
                    return node
                stack.extend(node.getChildAtIndex(j) for j in range(node.childCount))
            except Exception:  # objects vanish while windows change
                continue
    return None


def is_checked(node):
    return node.getState().contains(pyatspi.STATE_CHECKED)


def act(node):
    """Runs the switch's toggle action (its press action when it names no toggle)."""
    action = node.queryAction()
    names = [action.getName(i).lower() for i in range(action.nActions)]
    print("actions: " + ", ".join(names), flush=True)
    for wanted in ("toggle", "press"):
        if wanted in names:
            return action.doAction(names.index(wanted))
    return False


home = tempfile.mkdtemp(prefix="tessaline-autostart-")
entry = os.path.join(home, ".config", "autostart", "org.tessaline.Tessaline.desktop")
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
os.makedirs(home + "/.config/Tessaline")
with open(home + "/.config/Tessaline/defaults.json", "w") as f:
    json.dump({"Onboarding.completed": {"type": "bool", "value": True}}, f)

app = subprocess.Popen([TESSALINE, "--autostart"], env=env)
try:
    check(wait_until(lambda: control("ShowSettings"), 30), "the settings window opens")
    switch = wait_until(find_switch, 15)
    check(switch is not None, "the switch is on the accessibility bus")
    if switch is not None:
        check(not is_checked(switch), "the switch starts off")
        check(not os.path.exists(entry), "no autostart entry at first")

        check(act(switch), "the switch takes the action")
        check(wait_until(lambda: os.path.exists(entry), 5), "the action writes the entry")
        check(wait_until(lambda: is_checked(switch), 5), "the switch reads on")
        with open(entry) as f:
            text = f.read()
        check("Exec=" in text and "--autostart" in text, "the entry starts Tessaline at login")

        check(act(switch), "the switch takes the action again")
        check(wait_until(lambda: not os.path.exists(entry), 5), "the action removes the entry")
        check(wait_until(lambda: not is_checked(switch), 5), "the switch reads off")

        act(switch)
        wait_until(lambda: os.path.exists(entry), 5)
        os.remove(entry)
        check(wait_until(lambda: not is_checked(switch), 5),
              "removing the entry by hand turns the open switch off")
finally:
    control("Quit")
    try:
        app.wait(10)
    except subprocess.TimeoutExpired:
        app.kill()
        app.wait()

print("%d check(s) failed" % len(failures) if failures else "all autostart switch checks passed")
sys.exit(1 if failures else 0)
