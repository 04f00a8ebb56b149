// SPDX-License-Identifier: MIT
#include "platform/wayland/WaylandWorkspace.h"

#include "LogCategories.h"
#include "context/ToplevelApplications.h"
#include "platform/atspi/AtspiWorkspace.h"
#include "platform/desktop/DesktopEntryLookup.h"
#include "platform/wayland/ForeignToplevelList.h"

namespace Tessaline {

WaylandWorkspace::WaylandWorkspace(const DesktopEntryLookup& entries, QObject* parent)
    : Workspace(parent), m_entries(entries),
      m_accessible(std::make_unique<AtspiWorkspace>(entries)),
      m_windows(std::make_unique<ForeignToplevelList>())
{
    connect(m_accessible.get(), &Workspace::applicationActivated, this,
            &Workspace::applicationActivated);
    connect(m_windows.get(), &ForeignToplevelList::activatedAppChanged, this,
            &WaylandWorkspace::windowActivated);
    m_lastAppId = lastActivatedAppId();
}

WaylandWorkspace::~WaylandWorkspace() = default;

RunningApplication WaylandWorkspace::applicationOfAppId(const QString& appId) const
{
    // Windows usually carry their desktop-file id; older toolkits give a window class or the
    // program's name instead.
    std::optional<QString> id = appId;
    std::optional<DesktopEntryInfo> entry = m_entries.entry(appId);
    if (!entry) {
        id = m_entries.idForWindowClass(appId, appId);
        if (!id)
            id = m_entries.idForExecutable(appId);
        if (id)
            entry = m_entries.entry(*id);
    }
    RunningApplication application;
    application.bundleIdentifier = id.value_or(appId);
    application.localizedName = entry && !entry->name.isEmpty() ? entry->name : appId;
    return application;
}

std::optional<QString> WaylandWorkspace::lastActivatedAppId() const
{
    const std::optional<QString> activated = m_windows->activatedAppId();
    // Tessaline's own windows leave the application in front as it was.
    if (activated && !activated->isEmpty() && activated != ownBundleIdentifier())
        m_lastAppId = activated;
    return m_lastAppId;
}

void WaylandWorkspace::windowActivated()
{
    const std::optional<QString> before = m_lastAppId;
    const std::optional<QString> appId = lastActivatedAppId();
    if (!appId || appId == before)
        return;
    qCDebug(lcWayland) << "the compositor activated" << *appId;
    emit applicationActivated(frontmostApplication());
}

std::optional<RunningApplication> WaylandWorkspace::frontmostApplication() const
{
    const std::optional<QString> appId =
        m_windows->isAvailable() ? lastActivatedAppId() : std::nullopt;
    const std::optional<RunningApplication> accessibleFront = m_accessible->frontmostApplication();
    if (!appId)
        return accessibleFront;
    const RunningApplication windowFront = applicationOfAppId(*appId);
    // The bus usually agrees; its whole list is asked for only when it does not.
    if (accessibleFront && ToplevelApplications::same(*accessibleFront, windowFront))
        return accessibleFront;
    return ToplevelApplications::front(windowFront, accessibleFront,
                                       m_accessible->runningApplications());
}

QList<RunningApplication> WaylandWorkspace::runningApplications() const
{
    QList<RunningApplication> windows;
    for (const ForeignToplevelList::Toplevel& toplevel : m_windows->toplevels()) {
        if (!toplevel.appId.isEmpty() && toplevel.appId != ownBundleIdentifier())
            windows.append(applicationOfAppId(toplevel.appId));
    }
    return ToplevelApplications::merged(m_accessible->runningApplications(), windows);
}

bool WaylandWorkspace::activate(const RunningApplication& application)
{
    for (const ForeignToplevelList::Toplevel& toplevel : m_windows->toplevels()) {
        if (ToplevelApplications::same(applicationOfAppId(toplevel.appId), application))
            return m_windows->activate(toplevel.appId);
    }
    return m_accessible->activate(application);
}

} // namespace Tessaline
