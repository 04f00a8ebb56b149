"""Helpers shared by the Python desktop tests: processes, windows, the session bus and the
accessibility tree of a running Tessaline. Imported by tests that run inside
scripts/desktop-session."""
import subprocess
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


def tessaline_app():
    desktop = pyatspi.Registry.getDesktop(0)
    for i in range(desktop.childCount):
        app = desktop.getChildAtIndex(i)
        if app is not None and app.name.lower() == "tessaline":
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


def named(name, role):
    """Tessaline's named controls on screen now (a closed window's controls may linger on the
    bus)."""
    app = tessaline_app()
    if app is None:
        return []
    return find_all(app, lambda n: n.name == name and n.getRoleName() == role
                    and n.getState().contains(pyatspi.STATE_SHOWING))


def act(name, role="push button"):
    """Invokes the first action of the named control, as an assistive tool does."""
    def pressed():
        for node in named(name, role):
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
