// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>

namespace Tessaline {

/// What one read of an application's menus shares across its elements: the objects already
/// handed out (a cyclic tree ends there), the depth limit (an endlessly deep one ends there) and
/// whether a call went unanswered (every further call would cost another full timeout, so the
/// read stops).
struct AtspiWalkState
{
    /// Deepest level below the menu bar that is read.
    static constexpr int kMaxDepth = 24;
    /// Most elements read from one application.
    static constexpr int kMaxElements = 20000;

    QSet<QString> visited;
    bool failed = false;
};

} // namespace Tessaline
