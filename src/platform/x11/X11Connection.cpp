// SPDX-License-Identifier: MIT
#include "platform/x11/X11Connection.h"

#include <QByteArray>
#include <QGuiApplication>

namespace Tessaline {

bool X11Connection::isAvailable()
{
    return connection() != nullptr;
}

xcb_connection_t* X11Connection::connection()
{
    // The command-line companion may run as a plain QCoreApplication (no display): only a
    // QGuiApplication on the xcb platform has an X connection.
    auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (application == nullptr || QGuiApplication::platformName() != QLatin1String("xcb"))
        return nullptr;
    const auto* x11 = application->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t X11Connection::rootWindow(xcb_connection_t* connection)
{
    const xcb_setup_t* setup = xcb_get_setup(connection);
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
    if (screens.rem == 0)
        return XCB_NONE;
    const QByteArray display = qgetenv("DISPLAY");
    const qsizetype dot = display.lastIndexOf('.');
    const qsizetype colon = display.lastIndexOf(':');
    int wanted = 0;
    if (dot > colon && colon >= 0)
        wanted = display.mid(dot + 1).toInt();
    for (int i = 0; screens.rem; ++i, xcb_screen_next(&screens)) {
        if (i == wanted)
            return screens.data->root;
    }
    return xcb_setup_roots_iterator(setup).data->root;
}

} // namespace Tessaline
