// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

namespace Tessaline::Testing {

/// A workspace whose applications and front application the test sets directly.
class FakeWorkspace final : public Workspace
{
public:
    QList<RunningApplication> apps;
    std::optional<RunningApplication> frontmost;
    std::optional<QString> ownBundleID = QStringLiteral("org.tessaline.Tessaline");
    QList<RunningApplication> activated;
    /// False for a desktop that lets no application bring another to the front: activations
    /// are recorded and change nothing.
    bool activationSucceeds = true;

    std::optional<RunningApplication> frontmostApplication() const override { return frontmost; }
    QList<RunningApplication> runningApplications() const override { return apps; }
    bool activate(const RunningApplication& application) override;
    std::optional<QString> ownBundleIdentifier() const override { return ownBundleID; }

    /// Makes `application` frontmost and announces its activation.
    void activateAndAnnounce(const std::optional<RunningApplication>& application);
};

/// A regular application with a name and a bundle id.
RunningApplication makeApp(const QString& name, const QString& bundleID, qint64 pid = 1);

} // namespace Tessaline::Testing
