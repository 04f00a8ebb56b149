"""Helpers shared by the Python desktop tests: processes, windows, the session bus and the
accessibility tree of a running Tessaline. Imported by tests that run inside
scripts/desktop-session."""
import json
import os
import shutil
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


def end_session(tessaline, helpers, log, home, check, lines=60):
    """Stops Tessaline and the helper processes (the last started first), shows the end of the
    log when a check failed, and removes the test's home."""
    if tessaline is not None and tessaline.poll() is None:
        stop_tessaline(tessaline)
    for helper in reversed(helpers):
        helper.terminate()
        try:
            helper.wait(5)
        except subprocess.TimeoutExpired:
            helper.kill()
    log.close()
    if check.failures:
        print("The log ends:\n" + "".join(open(log.name).readlines()[-lines:]))
    shutil.rmtree(home, ignore_errors=True)


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


def sway_app_ids():
    """The app ids of the windows of the running sway session."""
    tree = run("swaymsg", "-t", "get_tree").stdout
    return [line.split('"')[3] for line in tree.splitlines() if '"app_id": "' in line]


def sway_focus(app_id):
    """Gives `app_id`'s window the focus, as a user's click would, through the compositor."""
    return run("swaymsg", f'[app_id="{app_id}"] focus').returncode == 0


def hud_frames():
    """The HUD's windows of the running Tessaline on the accessibility bus."""
    app = tessaline_app()
    if app is None:
        return []
    frames = []
    for i in range(app.childCount):
        try:
            frame = app.getChildAtIndex(i)
            if frame is not None and frame.name == "Tessaline":
                frames.append(frame)
        except Exception:  # windows close while they are read
            continue
    return frames


def press(name):
    """Invokes the action of Tessaline's button `name`, as an assistive tool does. The helper
    buttons close the HUD, which may take the button away before it answers: invoking counts."""
    app = tessaline_app()
    for node in find_all(app, lambda n: n.name == name and n.getRoleName() == "push button") if app else []:
        try:
            action = node.queryAction()
            if action.nActions == 0:
                continue
        except Exception:
            continue
        try:
            action.doAction(0)
        except Exception:  # the HUD closed before the answer came
            pass
        return True
    return False


def mousepad_texts():
    """The text interfaces of mousepad's text views, read through the accessibility bus."""
    desktop = pyatspi.Registry.getDesktop(0)
    for i in range(desktop.childCount):
        app = desktop.getChildAtIndex(i)
        if app is None or app.name.lower() != "mousepad":
            continue
        for node in find_all(app, lambda n: n.getRoleName() == "text"):
            try:
                yield node.queryText()
            except Exception:  # the view went away
                continue


def mousepad_text():
    """The text in mousepad's editor."""
    for text in mousepad_texts():
        try:
            return text.getText(0, text.characterCount)
        except Exception:
            continue
    return None


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
