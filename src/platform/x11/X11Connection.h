// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

namespace Tessaline {

/// Qt's own connection to the X server, shared by every X11 adapter. Qt opens it when its
/// platform is xcb; in any other session (Wayland, offscreen) there is none, and the adapters
/// then do nothing instead of calling into X11.
class X11Connection
{
public:
    X11Connection() = delete;

    /// True when Qt runs on xcb and its connection is open.
    static bool isAvailable();
    /// Qt's xcb connection; nullptr when Qt does not run on X11.
    static xcb_connection_t* connection();
    /// The root window of the screen that $DISPLAY names (the first screen unless it names
    /// another), where Qt puts its windows; XCB_NONE when the server lists no screen.
    static xcb_window_t rootWindow(xcb_connection_t* connection);
};

} // namespace Tessaline
