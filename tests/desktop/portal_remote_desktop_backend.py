#!/usr/bin/python3
"""A desktop's remote-desktop backend for the tests: serves org.freedesktop.impl.portal.RemoteDesktop
to the real xdg-desktop-portal frontend with a keyboard only. It grants every session (a user who
agrees), or refuses every start (a user who says no); it records what each session asked for
(device types, persist mode, the restore data the frontend passed on) and every keysym it is
sent, and types each finished chord into the compositor with wtype, so that the keys really
reach the focused window. A control interface (org.tessaline.test.RemoteDesktopBackend on the
backend's object) lets the test choose and look.

wtype makes a virtual keyboard of its own per run, and a modifier held on one virtual keyboard
does not reach keys of another: so the keys of one chord (from the first press to the moment no
key is down) are typed by one wtype run.

Usage: portal_remote_desktop_backend.py BUS_NAME
"""
import ctypes
import subprocess
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

IMPL = "org.freedesktop.impl.portal.RemoteDesktop"
SESSION = "org.freedesktop.impl.portal.Session"
CONTROL = "org.tessaline.test.RemoteDesktopBackend"
PROPERTIES = "org.freedesktop.DBus.Properties"
VERSION = 2
KEYBOARD = 1
VENDOR = "tessalinetest"

XKB = ctypes.CDLL("libxkbcommon.so.0")
# wtype's names for the modifiers it holds with -M / -m.
MODIFIERS = {"Shift_L": "shift", "Shift_R": "shift", "Control_L": "ctrl", "Control_R": "ctrl",
             "Alt_L": "alt", "Alt_R": "alt", "Super_L": "logo", "Super_R": "logo"}


def keysym_name(keysym):
    buffer = ctypes.create_string_buffer(64)
    XKB.xkb_keysym_get_name(ctypes.c_uint32(keysym), buffer, len(buffer))
    return buffer.value.decode()


class Session(dbus.service.Object):
    """One application session; it takes keys once started, until it is closed."""

    def __init__(self, backend, path, app_id):
        super().__init__(backend.bus, path)
        self.backend = backend
        self.path = path
        self.app_id = app_id
        self.started = False
        self.options = {}

    @dbus.service.method(SESSION, in_signature="", out_signature="")
    def Close(self):
        self.backend.sessions.pop(self.path, None)
        self.remove_from_connection()

    @dbus.service.signal(SESSION, signature="a{sv}")
    def Closed(self, details):
        pass


class Backend(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, "/org/freedesktop/portal/desktop")
        self.bus = bus
        self.sessions = {}
        self.refusing = False
        self.starts = 0
        self.restores = []  # the restore data each SelectDevices brought, "" for none
        self.requests = []  # (types, persist_mode) of each SelectDevices
        self.keysyms = []   # "name:1" for a press, "name:0" for a release
        self.chord = []     # the events of the chord being typed
        self.down = set()
        self.typed = []     # the wtype runs, each a list of arguments
        self.restore_count = 0

    # The backend interface the frontend calls.
    @dbus.service.method(IMPL, in_signature="oosa{sv}", out_signature="ua{sv}")
    def CreateSession(self, handle, session_handle, app_id, options):
        self.sessions[str(session_handle)] = Session(self, str(session_handle), str(app_id))
        return dbus.UInt32(0), dbus.Dictionary({"session_id": str(session_handle)}, signature="sv")

    @dbus.service.method(IMPL, in_signature="oosa{sv}", out_signature="ua{sv}")
    def SelectDevices(self, handle, session_handle, app_id, options):
        session = self.sessions.get(str(session_handle))
        if session is None:
            return dbus.UInt32(2), dbus.Dictionary({}, signature="sv")
        session.options = dict(options)
        restore = options.get("restore_data")
        self.restores.append(str(restore[2]) if restore is not None else "")
        self.requests.append((int(options.get("types", 0)), int(options.get("persist_mode", 0))))
        return dbus.UInt32(0), dbus.Dictionary({}, signature="sv")

    @dbus.service.method(IMPL, in_signature="oossa{sv}", out_signature="ua{sv}")
    def Start(self, handle, session_handle, app_id, parent_window, options):
        self.starts += 1
        session = self.sessions.get(str(session_handle))
        if session is None:
            return dbus.UInt32(2), dbus.Dictionary({}, signature="sv")
        if self.refusing:
            return dbus.UInt32(1), dbus.Dictionary({}, signature="sv")
        session.started = True
        results = {"devices": dbus.UInt32(KEYBOARD)}
        persist = int(session.options.get("persist_mode", 0))
        if persist:
            self.restore_count += 1
            results["persist_mode"] = dbus.UInt32(persist)
            results["restore_data"] = dbus.Struct(
                (VENDOR, dbus.UInt32(1), dbus.String("grant-%d" % self.restore_count, variant_level=1)),
                signature="suv")
        return dbus.UInt32(0), dbus.Dictionary(results, signature="sv")

    @dbus.service.method(IMPL, in_signature="oa{sv}iu", out_signature="")
    def NotifyKeyboardKeysym(self, session_handle, options, keysym, state):
        session = self.sessions.get(str(session_handle))
        if session is None or not session.started:
            return
        name = keysym_name(int(keysym))
        self.keysyms.append("%s:%d" % (name, int(state)))
        self.chord.append((name, bool(state)))
        if state:
            self.down.add(name)
        else:
            self.down.discard(name)
        if not self.down:
            self.type_chord()

    @dbus.service.method(IMPL, in_signature="oa{sv}iu", out_signature="")
    def NotifyKeyboardKeycode(self, session_handle, options, keycode, state):
        self.keysyms.append("keycode-%d:%d" % (int(keycode), int(state)))

    def type_chord(self):
        arguments = []
        for name, pressed in self.chord:
            if name in MODIFIERS:
                arguments += ["-M" if pressed else "-m", MODIFIERS[name]]
            else:
                arguments += ["-P" if pressed else "-p", name]
        self.chord = []
        self.typed.append(arguments)
        subprocess.run(["wtype"] + arguments, check=False)

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        values = self.GetAll(interface)
        if name in values:
            return values[name]
        raise dbus.exceptions.DBusException("no such property",
                                            name="org.freedesktop.DBus.Error.UnknownProperty")

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        if interface != IMPL:
            return dbus.Dictionary({}, signature="sv")
        return dbus.Dictionary({"version": dbus.UInt32(VERSION),
                                "AvailableDeviceTypes": dbus.UInt32(KEYBOARD)}, signature="sv")

    # The test's side.
    @dbus.service.method(CONTROL, in_signature="b", out_signature="")
    def SetRefusing(self, refusing):
        """While refusing, every start is cancelled, as by a user who says no."""
        self.refusing = bool(refusing)

    @dbus.service.method(CONTROL, in_signature="", out_signature="u")
    def StartCount(self):
        return self.starts

    @dbus.service.method(CONTROL, in_signature="", out_signature="as")
    def Restores(self):
        """The restore data of each session's device selection, "" where it brought none."""
        return dbus.Array(self.restores, signature="s")

    @dbus.service.method(CONTROL, in_signature="", out_signature="as")
    def Requests(self):
        """Each device selection as "types persist_mode"."""
        return dbus.Array(["%d %d" % r for r in self.requests], signature="s")

    @dbus.service.method(CONTROL, in_signature="", out_signature="as")
    def Keysyms(self):
        """Every key event received, as "keysym-name:state" (1 pressed, 0 released)."""
        return dbus.Array(self.keysyms, signature="s")

    @dbus.service.method(CONTROL, in_signature="", out_signature="u")
    def LiveSessions(self):
        return len(self.sessions)


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    backend = Backend(bus)  # noqa: F841 (exported while the loop runs)
    # The name is taken last, so that whoever sees it finds every object in place.
    name = dbus.service.BusName(sys.argv[1], bus)  # noqa: F841 (held for the process's life)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
