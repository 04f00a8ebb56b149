#!/usr/bin/python3
"""Every word a Linux user reads is true on Linux: no window of Tessaline (welcome, settings,
browser, HUD) and no command-line help names macOS things.

Runs inside scripts/desktop-session. Reads each window the way a screen reader does, through
its accessibility tree, and the help of both commands.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_support import (Checks, bus_name_owned, control, find_all, run, stop_tessaline,  # noqa: E402
                             tessaline_app, texts_of, visible_windows, wait_until)

BUILD = os.environ["TESSALINE_BUILD_DIR"]
TESSALINE = os.path.join(BUILD, "bin", "tessaline")
VAULT = os.path.join(BUILD, "bin", "tessaline-vault")
# macOS names that have no place on a Linux desktop. "Option" is the key's name ("Options:",
# the heading of every command-line help, is not it).
BANNED = re.compile(r"\bMac\b|macOS|\bFinder\b|\bOption\b|\bCmd\b|System Settings|"
                    r"Notes or Stickies|menu bar icon")
check = Checks()


def banned_in(texts):
    return sorted({t for t in texts if BANNED.search(t)})


def window_texts(title):
    """The texts of the Tessaline window titled `title`, as its accessible tree offers them."""
    app = tessaline_app()
    if app is None:
        return []
    frames = [app.getChildAtIndex(i) for i in range(app.childCount)]
    texts = []
    for frame in frames:
        if frame is not None and frame.name == title:
            for node in find_all(frame, lambda n: True):
                texts += texts_of(node)
    return texts


home = tempfile.mkdtemp(prefix="tessaline-words-")
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config",
           XDG_DATA_HOME=home + "/.local/share", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")

for command in ([TESSALINE, "--help"], [VAULT, "--help"]):
    result = subprocess.run(command, env=env, capture_output=True, text=True)
    found = banned_in((result.stdout + result.stderr).splitlines())
    check(result.returncode == 0 and not found,
          "%s --help names no macOS things %s" % (os.path.basename(command[0]), found or ""))

app = subprocess.Popen([TESSALINE], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
try:
    check(wait_until(bus_name_owned, 20), "Tessaline starts")
    check(wait_until(lambda: tessaline_app() is not None, 10), "Tessaline is on the accessibility bus")
    # The first start shows the welcome window; the others are opened as a user would.
    for title, method in (("Welcome to Tessaline", None),
                          ("Tessaline Settings", "ShowSettings"),
                          ("All Tessaline Shortcuts", "ShowBrowser"),
                          ("Tessaline", "ShowHUD")):
        if method:
            control(method)
        shown = wait_until(lambda: visible_windows("^%s$" % title), 10)
        texts = wait_until(lambda: window_texts(title), 10) if shown else []
        check(bool(texts), "the window %r is read through its accessibility tree (%d texts)"
              % (title, len(texts)))
        found = banned_in(texts)
        check(not found, "the window %r names no macOS things %s" % (title, found or ""))
finally:
    stop_tessaline(app)
    shutil.rmtree(home, ignore_errors=True)

check.finish()
