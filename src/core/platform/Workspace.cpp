// SPDX-License-Identifier: MIT
#include "platform/Workspace.h"

namespace Tessaline {

Workspace::~Workspace() = default;

QList<RunningApplication> Workspace::runningApplications(const QString& bundleIdentifier) const
{
    QList<RunningApplication> matching;
    for (const RunningApplication& app : runningApplications()) {
        if (app.bundleIdentifier == bundleIdentifier)
            matching.append(app);
    }
    return matching;
}

std::optional<QString> Workspace::ownBundleIdentifier() const
{
    return QStringLiteral("org.tessaline.Tessaline");
}

} // namespace Tessaline
