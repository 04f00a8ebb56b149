// SPDX-License-Identifier: MIT
#include "context/ToplevelApplications.h"

#include <algorithm>

namespace Tessaline {

bool ToplevelApplications::same(const RunningApplication& a, const RunningApplication& b)
{
    if (a.bundleIdentifier && b.bundleIdentifier && *a.bundleIdentifier == *b.bundleIdentifier)
        return true;
    return a.localizedName && b.localizedName && !a.localizedName->isEmpty() &&
           a.localizedName->compare(*b.localizedName, Qt::CaseInsensitive) == 0;
}

QList<RunningApplication> ToplevelApplications::merged(const QList<RunningApplication>& accessible,
                                                       const QList<RunningApplication>& windows)
{
    QList<RunningApplication> all = accessible;
    for (const RunningApplication& window : windows) {
        const bool known = std::any_of(all.cbegin(), all.cend(),
                                       [&window](const auto& app) { return same(app, window); });
        if (!known)
            all.append(window);
    }
    return all;
}

RunningApplication
ToplevelApplications::front(const RunningApplication& windowFront,
                            const std::optional<RunningApplication>& accessibleFront,
                            const QList<RunningApplication>& accessible)
{
    if (accessibleFront && same(*accessibleFront, windowFront))
        return *accessibleFront;
    const auto found =
        std::find_if(accessible.cbegin(), accessible.cend(),
                     [&windowFront](const auto& app) { return same(app, windowFront); });
    return found != accessible.cend() ? *found : windowFront;
}

} // namespace Tessaline
