// SPDX-License-Identifier: MIT
#pragma once

#include "platform/RunningApplication.h"

#include <QList>
#include <QString>

namespace Tessaline {

class DesktopEntryLookup;

/// What the window manager and the client tell about one managed top-level window.
struct ClientWindow
{
    quint32 id = 0;
    /// _GTK_APPLICATION_ID; empty when not set.
    QString gtkApplicationId;
    /// _KDE_NET_WM_DESKTOP_FILE; empty when not set.
    QString kdeDesktopFile;
    /// The two WM_CLASS strings; empty when not set.
    QString wmInstance;
    QString wmClass;
    /// _NET_WM_PID; 0 when not set.
    qint64 pid = 0;
    /// _NET_WM_WINDOW_TYPE is NORMAL or not given.
    bool normalType = true;
    /// _NET_WM_STATE holds SKIP_TASKBAR.
    bool skipTaskbar = false;
};

/// One application and its windows, in the window manager's order.
struct WindowApp
{
    RunningApplication application;
    QList<quint32> windows;
};

/// Turns managed windows into applications: windows of one process form one application, whose
/// bundle id is the desktop-file id named by the window (_GTK_APPLICATION_ID, then
/// _KDE_NET_WM_DESKTOP_FILE), else the entry that claims its WM_CLASS, else the WM_CLASS class
/// lower-cased. Windows of Tessaline's own process carry Tessaline's own bundle id.
class WindowAppResolver
{
public:
    WindowAppResolver(const DesktopEntryLookup& entries, qint64 ownPid, QString ownBundleID)
        : m_entries(entries), m_ownPid(ownPid), m_ownBundleID(std::move(ownBundleID))
    {}

    /// The applications of `windows`, each placed where its first window stands.
    QList<WindowApp> applications(const QList<ClientWindow>& windows) const;

private:
    struct Identity
    {
        std::optional<QString> bundleID;
        /// How sure the id is: 3 named by the window, 2 matched through WM_CLASS, 1 guessed
        /// from WM_CLASS, 0 none.
        int strength = 0;
    };
    Identity identify(const ClientWindow& window) const;
    bool isOwn(const ClientWindow& window) const;

    const DesktopEntryLookup& m_entries;
    qint64 m_ownPid;
    QString m_ownBundleID;
};

} // namespace Tessaline
