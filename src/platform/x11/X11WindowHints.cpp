// SPDX-License-Identifier: MIT
#include "platform/x11/X11WindowHints.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbReply.h"

#include <QWindow>

#include <xcb/xcb.h>

namespace Tessaline {
namespace {

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name)
{
    const auto reply =
        xcbReply(xcb_intern_atom_reply, connection,
                 xcb_intern_atom(connection, 0, static_cast<uint16_t>(qstrlen(name)), name));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

void X11WindowHints::skipTaskbar(QWindow& window)
{
    xcb_connection_t* connection = X11Connection::connection();
    if (!connection)
        return;
    const xcb_window_t root = X11Connection::rootWindow(connection);
    const xcb_atom_t state = internAtom(connection, "_NET_WM_STATE");
    const xcb_atom_t skipTaskbar = internAtom(connection, "_NET_WM_STATE_SKIP_TASKBAR");
    const xcb_atom_t skipPager = internAtom(connection, "_NET_WM_STATE_SKIP_PAGER");
    if (root == XCB_NONE || state == XCB_ATOM_NONE)
        return;

    // A mapped window's state is changed by asking the window manager on the root window.
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = static_cast<xcb_window_t>(window.winId());
    event.type = state;
    event.data.data32[0] = 1; // add
    event.data.data32[1] = skipTaskbar;
    event.data.data32[2] = skipPager;
    event.data.data32[3] = 1; // from an application
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

} // namespace Tessaline
