// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

namespace Tessaline {

/// The workspace of a session Tessaline cannot look into: no application is in front, none
/// runs, none can be activated. The HUD then shows its "no app" state.
class InertWorkspace final : public Workspace
{
public:
    using Workspace::Workspace;

    std::optional<RunningApplication> frontmostApplication() const override { return std::nullopt; }
    QList<RunningApplication> runningApplications() const override { return {}; }
    bool activate(const RunningApplication&) override { return false; }
};

} // namespace Tessaline
