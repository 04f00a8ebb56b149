// SPDX-License-Identifier: MIT
#pragma once

#include "context/ActivationOrder.h"
#include "platform/Workspace.h"
#include "platform/atspi/AtspiBus.h"

#include <QDBusConnection>
#include <QHash>

#include <memory>
#include <optional>

namespace Tessaline {

class AtspiEventWatcher;
class DesktopEntryLookup;
class ProcessAppIdentity;

/// The workspace as the accessibility bus shows it, for sessions whose display server keeps
/// other clients' windows to itself (Wayland). The running applications are those registered
/// on the bus with at least one window; the application in front is the one whose window was
/// last activated or whose control last took the focus (the bus's window:activate and focus
/// events) unless another one's window says it is active now. Applications are identified through
/// their process (see ProcessAppIdentity). Tessaline's own process is never reported.
class AtspiWorkspace final : public Workspace
{
    Q_OBJECT
public:
    /// `entries` must outlive the workspace. Without an accessibility bus it reports nothing.
    explicit AtspiWorkspace(const DesktopEntryLookup& entries, QObject* parent = nullptr);
    ~AtspiWorkspace() override;

    std::optional<RunningApplication> frontmostApplication() const override;
    QList<RunningApplication> runningApplications() const override;
    using Workspace::runningApplications;
    /// Asks the application's first window to take the focus; compositors may refuse.
    bool activate(const RunningApplication& application) override;

private:
    struct Registered
    {
        QString busName;
        RunningApplication application;
    };
    /// The applications on the bus, each with its bus name, in the registry's order.
    QList<Registered> registeredApplications(bool withWindowsOnly) const;
    /// The application behind a bus name; nothing for Tessaline's own or an unknown sender.
    std::optional<RunningApplication> applicationOf(const QString& busName) const;
    void noteActive(const QString& busName);
    void noteInactive(const QString& busName);
    /// The bus name of the application with an active window, other than Tessaline.
    std::optional<QString> activeBusName() const;
    /// The top-level windows of the application with this bus name; absent when it does not
    /// answer.
    std::optional<QList<AtspiReference>> windowsOf(const QString& busName) const;

    const DesktopEntryLookup& m_entries;
    std::unique_ptr<ProcessAppIdentity> m_identity;
    std::optional<QDBusConnection> m_bus;
    std::unique_ptr<AtspiEventWatcher> m_events;
    qint64 m_ownPid;
    mutable QHash<QString, std::optional<RunningApplication>> m_known;
    /// The applications' bus names in the order their windows were activated.
    ActivationOrder m_order;
    /// The application last seen in front.
    mutable std::optional<QString> m_frontBusName;
};

} // namespace Tessaline
