// SPDX-License-Identifier: MIT
#include "FakeWorkspace.h"

namespace Tessaline::Testing {

bool FakeWorkspace::activate(const RunningApplication& application)
{
    activated.append(application);
    if (!activationSucceeds)
        return false;
    frontmost = application;
    return true;
}

void FakeWorkspace::activateAndAnnounce(const std::optional<RunningApplication>& application)
{
    frontmost = application;
    emit applicationActivated(application);
}

RunningApplication makeApp(const QString& name, const QString& bundleID, qint64 pid)
{
    return RunningApplication{name, bundleID, pid, true};
}

} // namespace Tessaline::Testing
