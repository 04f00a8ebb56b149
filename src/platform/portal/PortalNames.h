// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Tessaline::PortalNames {

/// The desktop portal's bus name, object and the interfaces the hot keys and typed keys use.
inline QString service()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}
inline QString path()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}
inline QString globalShortcutsInterface()
{
    return QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
}
inline QString remoteDesktopInterface()
{
    return QStringLiteral("org.freedesktop.portal.RemoteDesktop");
}
inline QString requestInterface()
{
    return QStringLiteral("org.freedesktop.portal.Request");
}
inline QString sessionInterface()
{
    return QStringLiteral("org.freedesktop.portal.Session");
}

} // namespace Tessaline::PortalNames
