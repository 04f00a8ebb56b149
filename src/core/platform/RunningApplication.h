// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace Tessaline {

/// A running application as the workspace reports it.
struct RunningApplication
{
    /// The desktop entry's localized name; absent when the application has none.
    std::optional<QString> localizedName;
    /// The desktop-file id without ".desktop"; absent when it cannot be resolved.
    std::optional<QString> bundleIdentifier;
    /// The process id (0 when unknown).
    qint64 processId = 0;
    /// True for applications with an ordinary, taskbar-listed top-level window.
    bool isRegular = true;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

} // namespace Tessaline
