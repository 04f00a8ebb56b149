#!/usr/bin/python3
"""A desktop's global-shortcuts backend for the tests: serves
org.freedesktop.impl.portal.GlobalShortcuts to the real xdg-desktop-portal frontend and binds
every shortcut with the trigger the application prefers, or declines every binding (a user who
says no), or leaves them unanswered (a user who never closes the dialog). A control interface
(org.tessaline.test.ShortcutsBackend on the backend's object) lets the test choose, see what is
bound, and press and release bound triggers.

Usage: portal_shortcuts_backend.py BUS_NAME
"""
import sys
import time

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

IMPL = "org.freedesktop.impl.portal.GlobalShortcuts"
SESSION = "org.freedesktop.impl.portal.Session"
CONTROL = "org.tessaline.test.ShortcutsBackend"
PROPERTIES = "org.freedesktop.DBus.Properties"


class Session(dbus.service.Object):
    """One application session; its shortcuts live until it is closed."""

    def __init__(self, backend, path, app_id):
        super().__init__(backend.bus, path)
        self.backend = backend
        self.path = path
        self.app_id = app_id
        self.shortcuts = {}  # id -> trigger

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
        self.declining = False
        self.holding = False
        self.held = []
        self.bindings = 0

    # The backend interface the frontend calls.
    @dbus.service.method(IMPL, in_signature="oosa{sv}", out_signature="ua{sv}")
    def CreateSession(self, handle, session_handle, app_id, options):
        self.sessions[str(session_handle)] = Session(self, str(session_handle), str(app_id))
        # xdg-desktop-portal 1.16 reads the session's shortcuts from this answer too.
        return dbus.UInt32(0), {"shortcuts": self.described(self.sessions[str(session_handle)])}

    @dbus.service.method(IMPL, in_signature="ooa(sa{sv})sa{sv}", out_signature="ua{sv}",
                         async_callbacks=("reply", "error"))
    def BindShortcuts(self, handle, session_handle, shortcuts, parent_window, options, reply, error):
        self.bindings += 1
        if self.holding:
            # As a user who leaves the dialog open: no answer yet.
            self.held.append(reply)
            return
        session = self.sessions.get(str(session_handle))
        if session is None:
            reply(dbus.UInt32(2), dbus.Dictionary({}, signature="sv"))
        elif self.declining:
            reply(dbus.UInt32(1), {"shortcuts": dbus.Array([], signature="(sa{sv})")})
        else:
            for shortcut_id, properties in shortcuts:
                session.shortcuts[str(shortcut_id)] = str(properties.get("preferred_trigger", ""))
            reply(dbus.UInt32(0), {"shortcuts": self.described(session)})

    @dbus.service.method(IMPL, in_signature="oo", out_signature="ua{sv}")
    def ListShortcuts(self, handle, session_handle):
        session = self.sessions.get(str(session_handle))
        if session is None:
            return dbus.UInt32(2), dbus.Dictionary({}, signature="sv")
        return dbus.UInt32(0), {"shortcuts": self.described(session)}

    @dbus.service.signal(IMPL, signature="osta{sv}")
    def Activated(self, session_handle, shortcut_id, timestamp, options):
        pass

    @dbus.service.signal(IMPL, signature="osta{sv}")
    def Deactivated(self, session_handle, shortcut_id, timestamp, options):
        pass

    @dbus.service.signal(IMPL, signature="oa(sa{sv})")
    def ShortcutsChanged(self, session_handle, shortcuts):
        pass

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        if interface == IMPL and name == "version":
            return dbus.UInt32(1)
        raise dbus.exceptions.DBusException("no such property",
                                            name="org.freedesktop.DBus.Error.UnknownProperty")

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return {"version": dbus.UInt32(1)} if interface == IMPL else {}

    @staticmethod
    def described(session):
        return dbus.Array([(shortcut_id, {"description": shortcut_id, "trigger_description": trigger})
                           for shortcut_id, trigger in session.shortcuts.items()],
                          signature="(sa{sv})")

    # The test's side: what is bound, pressing and releasing triggers, declining.
    @dbus.service.method(CONTROL, in_signature="", out_signature="as")
    def Triggers(self):
        return sorted(t for s in self.sessions.values() for t in s.shortcuts.values())

    @dbus.service.method(CONTROL, in_signature="", out_signature="u")
    def BindCount(self):
        return self.bindings

    @dbus.service.method(CONTROL, in_signature="b", out_signature="")
    def SetDeclining(self, declining):
        self.declining = bool(declining)

    @dbus.service.method(CONTROL, in_signature="b", out_signature="")
    def SetHolding(self, holding):
        """While holding, bindings get no answer, as if the user never closed the dialog."""
        self.holding = bool(holding)

    @dbus.service.method(CONTROL, in_signature="sb", out_signature="u")
    def Trigger(self, trigger, pressed):
        """Presses (or releases) `trigger` for every session that bound it; returns how many
        shortcuts it reached."""
        reached = 0
        stamp = dbus.UInt64(int(time.monotonic() * 1000))
        for session in list(self.sessions.values()):
            for shortcut_id, bound in session.shortcuts.items():
                if bound == trigger:
                    signal = self.Activated if pressed else self.Deactivated
                    signal(dbus.ObjectPath(session.path), shortcut_id, stamp,
                           dbus.Dictionary({}, signature="sv"))
                    reached += 1
        return reached


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    backend = Backend(bus)  # noqa: F841 (exported while the loop runs)
    # The name is taken last, so that whoever sees it finds every object in place.
    name = dbus.service.BusName(sys.argv[1], bus)  # noqa: F841 (held for the process's life)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
