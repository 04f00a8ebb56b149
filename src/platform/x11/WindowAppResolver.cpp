// SPDX-License-Identifier: MIT
#include "platform/x11/WindowAppResolver.h"

#include "platform/desktop/DesktopEntryLookup.h"

#include <QHash>

namespace Tessaline {
namespace {

QString withoutDesktopSuffix(QString id)
{
    if (id.endsWith(QLatin1String(".desktop")))
        id.chop(8);
    return id;
}

/// Windows of one process belong together; without a pid, windows that name the same app do.
QString groupKey(const ClientWindow& window, const std::optional<QString>& bundleID)
{
    if (window.pid > 0)
        return QStringLiteral("pid:") + QString::number(window.pid);
    if (bundleID)
        return QStringLiteral("id:") + *bundleID;
    return QStringLiteral("window:") + QString::number(window.id);
}

} // namespace

bool WindowAppResolver::isOwn(const ClientWindow& window) const
{
    if (m_ownPid > 0 && window.pid == m_ownPid)
        return true;
    if (m_ownBundleID.isEmpty())
        return false;
    return window.wmClass.compare(m_ownBundleID, Qt::CaseInsensitive) == 0 ||
           window.wmInstance.compare(m_ownBundleID, Qt::CaseInsensitive) == 0 ||
           window.gtkApplicationId == m_ownBundleID ||
           withoutDesktopSuffix(window.kdeDesktopFile) == m_ownBundleID;
}

WindowAppResolver::Identity WindowAppResolver::identify(const ClientWindow& window) const
{
    if (isOwn(window))
        return Identity{m_ownBundleID, 4};
    if (!window.gtkApplicationId.isEmpty())
        return Identity{window.gtkApplicationId, 3};
    if (!window.kdeDesktopFile.isEmpty())
        return Identity{withoutDesktopSuffix(window.kdeDesktopFile), 3};
    if (std::optional<QString> id = m_entries.idForWindowClass(window.wmInstance, window.wmClass))
        return Identity{*id, 2};
    if (!window.wmClass.isEmpty())
        return Identity{window.wmClass.toLower(), 1};
    if (!window.wmInstance.isEmpty())
        return Identity{window.wmInstance.toLower(), 1};
    return Identity{};
}

QList<WindowApp> WindowAppResolver::applications(const QList<ClientWindow>& windows) const
{
    struct Group
    {
        WindowApp app;
        int strength = -1;
        /// The window the identity came from, for the name.
        const ClientWindow* source = nullptr;
    };
    QList<Group> groups;
    QHash<QString, qsizetype> indexByKey;

    for (const ClientWindow& window : windows) {
        const Identity identity = identify(window);
        const QString key = groupKey(window, identity.bundleID);
        qsizetype index = indexByKey.value(key, -1);
        if (index < 0) {
            index = groups.size();
            indexByKey.insert(key, index);
            groups.append(Group{});
            groups[index].app.application.processId = window.pid;
            groups[index].app.application.isRegular = false;
        }
        Group& group = groups[index];
        group.app.windows.append(window.id);
        if (window.normalType && !window.skipTaskbar)
            group.app.application.isRegular = true;
        // The window that names its app most surely speaks for the whole process (a GTK
        // dialog lacks the application id its main window has).
        if (identity.strength > group.strength) {
            group.strength = identity.strength;
            group.source = &window;
            group.app.application.bundleIdentifier = identity.bundleID;
        }
    }

    QList<WindowApp> result;
    result.reserve(groups.size());
    for (Group& group : groups) {
        RunningApplication& app = group.app.application;
        std::optional<DesktopEntryInfo> entry;
        if (app.bundleIdentifier)
            entry = m_entries.entry(*app.bundleIdentifier);
        if (entry && !entry->name.isEmpty())
            app.localizedName = entry->name;
        else if (!group.source->wmClass.isEmpty())
            app.localizedName = group.source->wmClass;
        else if (!group.source->wmInstance.isEmpty())
            app.localizedName = group.source->wmInstance;
        result.append(std::move(group.app));
    }
    return result;
}

} // namespace Tessaline
