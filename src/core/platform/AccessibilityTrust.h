// SPDX-License-Identifier: MIT
#pragma once

namespace Tessaline {

/// Whether Tessaline may read other applications' interfaces and post keystrokes. On Linux:
/// the accessibility bus is reachable and its IsEnabled status is on.
class AccessibilityTrust
{
public:
    virtual ~AccessibilityTrust() = default;
    virtual bool isTrusted() const = 0;
    /// Asks the desktop to turn accessibility on (the permission prompt). Applications that
    /// started before may need a restart to expose themselves.
    virtual void requestTrust() = 0;
};

} // namespace Tessaline
