#!/usr/bin/python3
# A naive accessibility client for comparison: finds the application by process id, finds its
# menu bar and walks the whole menu tree with pyatspi, reading each object's name, children and
# first key binding. Prints the median time of RUNS walks in milliseconds.
#   scan_menus_pyatspi.py PID RUNS
import statistics
import sys
import time

import pyatspi


def find_menu_bar(obj, depth=0):
    if obj.getRole() == pyatspi.ROLE_MENU_BAR:
        return obj
    if depth >= 6:
        return None
    for child in obj:
        if child is None:
            continue
        found = find_menu_bar(child, depth + 1)
        if found is not None:
            return found
    return None


def walk(obj, path, out):
    name = (obj.name or "").strip()
    binding = ""
    try:
        action = obj.queryAction()
        binding = action.getKeyBinding(0)
    except NotImplementedError:
        pass
    if binding:
        out.append((name, binding, " > ".join(path)))
    for child in obj:
        if child is not None:
            walk(child, path + [name] if name else path, out)


def scan(pid):
    desktop = pyatspi.Registry.getDesktop(0)
    for app in desktop:
        if app is not None and app.get_process_id() == pid:
            menu_bar = find_menu_bar(app)
            out = []
            walk(menu_bar, [], out)
            return out
    raise SystemExit("no application with pid %d" % pid)


def main():
    pid = int(sys.argv[1])
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 9
    times = []
    count = 0
    for _ in range(runs):
        start = time.perf_counter()
        count = len(scan(pid))
        times.append((time.perf_counter() - start) * 1000.0)
    print("pyatspi walk: median %.1f ms over %d runs (%d objects with a key binding)"
          % (statistics.median(times), runs, count))


main()
