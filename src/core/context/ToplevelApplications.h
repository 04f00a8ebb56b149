// SPDX-License-Identifier: MIT
#pragma once

#include "platform/RunningApplication.h"

#include <QList>

#include <optional>

namespace Tessaline {

/// Joins two views of the running applications: the accessibility bus's (with process ids,
/// only applications that speak to assistive tools) and the compositor's window list (every
/// application with a window, known only by the id it gave its windows). An application seen
/// in both is reported once, as the bus knows it.
class ToplevelApplications
{
public:
    /// Whether the two describe the same application: the same desktop-file id, or the same
    /// name compared without case.
    static bool same(const RunningApplication& a, const RunningApplication& b);
    /// The bus's applications, then the window list's that the bus does not know, each once.
    static QList<RunningApplication> merged(const QList<RunningApplication>& accessible,
                                            const QList<RunningApplication>& windows);
    /// The application the compositor has in front, as the bus knows it when it does:
    /// `accessibleFront` when it is the same application, else the first of `accessible` that
    /// is, else `windowFront` itself.
    static RunningApplication front(const RunningApplication& windowFront,
                                    const std::optional<RunningApplication>& accessibleFront,
                                    const QList<RunningApplication>& accessible);
};

} // namespace Tessaline
