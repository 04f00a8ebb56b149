// SPDX-License-Identifier: MIT
#pragma once

class QWindow;

namespace Tessaline {

/// What Tessaline tells the window manager about its own windows beyond what Qt says.
class WindowHints
{
public:
    virtual ~WindowHints() = default;
    /// Keeps a shown window out of taskbars and pagers: the HUD is a floating panel, not an
    /// application window. Call after showing it.
    virtual void skipTaskbar(QWindow& window) = 0;
};

} // namespace Tessaline
