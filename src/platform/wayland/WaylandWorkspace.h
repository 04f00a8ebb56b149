// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

#include <memory>
#include <optional>

namespace Tessaline {

class AtspiWorkspace;
class DesktopEntryLookup;
class ForeignToplevelList;

/// The workspace of a Wayland session: the accessibility bus's view (AtspiWorkspace), joined
/// with the compositor's window list where the compositor offers one (ForeignToplevelList), so
/// that applications that are not on the bus are seen too and the application in front is the
/// one the compositor activated. Without a window list it is the bus's view alone.
class WaylandWorkspace final : public Workspace
{
    Q_OBJECT
public:
    /// `entries` must outlive the workspace.
    explicit WaylandWorkspace(const DesktopEntryLookup& entries, QObject* parent = nullptr);
    ~WaylandWorkspace() override;

    std::optional<RunningApplication> frontmostApplication() const override;
    QList<RunningApplication> runningApplications() const override;
    using Workspace::runningApplications;
    /// Asks the compositor to activate the application's window, else its accessible window
    /// to take the focus.
    bool activate(const RunningApplication& application) override;

private:
    /// The application behind a window's application id, known by its desktop entry.
    RunningApplication applicationOfAppId(const QString& appId) const;
    /// The application the compositor activated last, other than Tessaline.
    std::optional<QString> lastActivatedAppId() const;
    void windowActivated();

    const DesktopEntryLookup& m_entries;
    std::unique_ptr<AtspiWorkspace> m_accessible;
    std::unique_ptr<ForeignToplevelList> m_windows;
    mutable std::optional<QString> m_lastAppId;
};

} // namespace Tessaline
