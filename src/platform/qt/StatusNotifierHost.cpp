// SPDX-License-Identifier: MIT
#include "platform/qt/StatusNotifierHost.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>

namespace Tessaline {

bool StatusNotifierHost::isRegistered()
{
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface() || !bus.interface()->isServiceRegistered(watcher))
        return false;
    QDBusInterface properties(watcher, QStringLiteral("/StatusNotifierWatcher"), watcher, bus);
    return properties.property("IsStatusNotifierHostRegistered").toBool();
}

} // namespace Tessaline
