// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/WindowAppResolver.h"

#include <QByteArray>
#include <QList>

#include <xcb/xcb.h>

namespace Tessaline {

/// Reads and writes the window-manager properties the workspace needs on one xcb connection.
/// Requests for many windows are sent together and answered in one round trip.
class XcbWindowProperties
{
public:
    XcbWindowProperties(xcb_connection_t* connection, xcb_window_t root);

    xcb_window_t root() const { return m_root; }
    xcb_atom_t activeWindowAtom() const { return m_atoms[NetActiveWindow]; }

    /// The managed top-level windows (_NET_CLIENT_LIST), in mapping order.
    QList<xcb_window_t> clientList() const;
    /// The managed windows from bottom to top (_NET_CLIENT_LIST_STACKING).
    QList<xcb_window_t> stackingOrder() const;
    /// The window the window manager has made active; 0 when none.
    xcb_window_t activeWindow() const;
    /// Identity, process and type properties of every window that still exists.
    QList<ClientWindow> describe(const QList<xcb_window_t>& windows) const;
    /// Asks the window manager to activate `window` as a pager would (source indication 2).
    void requestActivation(xcb_window_t window, xcb_window_t currentlyActive) const;

private:
    enum Atom
    {
        NetClientList,
        NetClientListStacking,
        NetActiveWindow,
        NetWmPid,
        NetWmWindowType,
        NetWmWindowTypeNormal,
        NetWmState,
        NetWmStateSkipTaskbar,
        GtkApplicationId,
        KdeNetWmDesktopFile,
        Utf8String,
        AtomCount
    };

    QList<xcb_window_t> windowList(xcb_atom_t property) const;

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_atom_t m_atoms[AtomCount] = {};
};

} // namespace Tessaline
