// SPDX-License-Identifier: MIT
#include "platform/x11/X11TaskbarHint.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>

namespace Tessaline {
namespace {

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name)
{
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(qstrlen(name)), name),
        nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return atom;
}

} // namespace

void X11TaskbarHint::skipTaskbar(QWindow& window)
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection())
        return;
    xcb_connection_t* connection = x11->connection();
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_atom_t state = internAtom(connection, "_NET_WM_STATE");
    const xcb_atom_t skipTaskbar = internAtom(connection, "_NET_WM_STATE_SKIP_TASKBAR");
    const xcb_atom_t skipPager = internAtom(connection, "_NET_WM_STATE_SKIP_PAGER");
    if (!screen || state == XCB_ATOM_NONE)
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
    xcb_send_event(connection, 0, screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

} // namespace Tessaline
