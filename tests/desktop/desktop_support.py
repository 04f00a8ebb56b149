"""Helpers shared by the Python desktop tests: processes, windows, the session bus and the
accessibility tree of a running Tessaline. Imported by tests that run inside
scripts/desktop-session."""
import json
import os
import subprocess
import sys
import tempfile
import time

import pyatspi


def run(*args, **kwargs):
    return subprocess.run(args, capture_output=True, text=True, **kwargs)


def wait_until(predicate, seconds=10.0, step=0.1):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = predicate()
        if value:
            return value
        time.sleep(step)
    return predicate()


def visible_windows(name):
    result = run("xdotool", "search", "--onlyvisible", "--name", name)
    return [w for w in result.stdout.split() if w]


def tray_icon_geometry():
    """(x, y, width, height) of Tessaline's icon in the panel's tray, or None."""
    for window in run("xdotool", "search", "--class", "tessaline").stdout.split():
        geometry = run("xdotool", "getwindowgeometry", "--shell", window).stdout
        values = dict(line.split("=") for line in geometry.split() if "=" in line)
        if values and 8 <= int(values["WIDTH"]) <= 64 and 8 <= int(values["HEIGHT"]) <= 64:
            return tuple(int(values[k]) for k in ("X", "Y", "WIDTH", "HEIGHT"))
    return None


def control(method):
    """Calls a method of the running Tessaline's session-bus interface."""
    return run("gdbus", "call", "--session", "--dest", "org.tessaline.Tessaline",
               "--object-path", "/org/tessaline/Tessaline", "--method",
               "org.tessaline.Tessaline." + method)


def bus_name_owned():
    result = run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                 "--object-path", "/org/freedesktop/DBus",
                 "--method", "org.freedesktop.DBus.NameHasOwner", "org.tessaline.Tessaline")
    return "true" in result.stdout


def stop_tessaline(app):
    """Asks the running Tessaline to quit and waits for its process; kills it if it hangs."""
    control("Quit")
    try:
        app.wait(10)
    except subprocess.TimeoutExpired:
        app.kill()


def tessaline_app(name="tessaline"):
    """The running application called `name` on the accessibility bus (Tessaline by default)."""
    desktop = pyatspi.Registry.getDesktop(0)
    for i in range(desktop.childCount):
        app = desktop.getChildAtIndex(i)
        if app is not None and app.name.lower() == name:
            return app
    return None


def find_all(root, predicate, limit=6000):
    found, stack, seen = [], [root], 0
    while stack and seen < limit:
        node = stack.pop()
        if node is None:
            continue
        seen += 1
        try:
            if predicate(node):
                found.append(node)
            stack.extend(node.getChildAtIndex(i) for i in reversed(range(node.childCount)))
        except Exception:  # objects vanish while windows close
            continue
    return found


def named(name, role, app_name="tessaline"):
    """The application's named controls on screen now (a closed window's controls may linger
    on the bus)."""
    app = tessaline_app(app_name)
    if app is None:
        return []
    return find_all(app, lambda n: n.name == name and n.getRoleName() == role
                    and n.getState().contains(pyatspi.STATE_SHOWING))


def act(name, role="push button", app_name="tessaline"):
    """Invokes the first action of the named control, as an assistive tool does."""
    def pressed():
        for node in named(name, role, app_name):
            try:
                action = node.queryAction()
                if action.nActions > 0 and action.doAction(0):
                    return True
            except Exception:  # the window closed under us
                continue
        return False
    return wait_until(pressed, 5)


def set_accessibility(enabled):
    """Turns the desktop's accessibility switch on or off, as a settings panel does."""
    return run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
               "/org/a11y/bus", "--method", "org.freedesktop.DBus.Properties.Set",
               "org.a11y.Status", "IsEnabled", "<true>" if enabled else "<false>")


def texts_of(node):
    """Everything a screen reader could read out of one accessible: name, description and, for
    text objects, the text itself."""
    texts = []
    try:
        texts += [node.name or "", node.description or ""]
        text = node.queryText()
        texts.append(text.getText(0, text.characterCount))
    except Exception:
        pass
    return [t for t in texts if t]


class Checks:
    """Prints each check as PASS or FAIL and ends the test with the outcome."""

    def __init__(self):
        self.passed = 0
        self.failures = []

    def __call__(self, condition, what):
        print(("PASS " if condition else "FAIL ") + what, flush=True)
        if condition:
            self.passed += 1
        else:
            self.failures.append(what)

    def finish(self):
        print("%d passed, %d failed" % (self.passed, len(self.failures)))
        sys.exit(1 if self.failures else 0)


def tessaline_binary():
    return os.path.join(os.environ["TESSALINE_BUILD_DIR"], "bin", "tessaline")


def finished_setup_home(prefix, vault=None):
    """A private home whose Tessaline has finished its welcome window (and holds `vault`, when
    given); returns the environment to start programs in."""
    home = tempfile.mkdtemp(prefix=prefix)
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
               XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    os.makedirs(home + "/.config/Tessaline")
    os.makedirs(home + "/.local/share/Tessaline")
    with open(home + "/.config/Tessaline/defaults.json", "w") as f:
        json.dump({"Onboarding.completed": {"type": "bool", "value": True}}, f)
    if vault is not None:
        with open(home + "/.local/share/Tessaline/keybinds.json", "w") as f:
            json.dump(vault, f)
    return env


def start_small_editor(env):
    """Starts mousepad in a small window at the top left; returns (process, window)."""
    editor = subprocess.Popen(["mousepad", "--disable-server"], env=env,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    window = wait_until(lambda: run("xdotool", "search", "--onlyvisible", "--class",
                                    "mousepad").stdout.split(), 15)[0]
    run("xdotool", "windowsize", window, "260", "200")
    run("xdotool", "windowmove", window, "0", "0")
    return editor, window
