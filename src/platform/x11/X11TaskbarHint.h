// SPDX-License-Identifier: MIT
#pragma once

class QWindow;

namespace Tessaline {

/// Keeps a shown window out of the taskbar and pager: the HUD is a floating panel, not an
/// application window. Does nothing off X11.
class X11TaskbarHint
{
public:
    X11TaskbarHint() = delete;
    /// Asks the window manager to skip `window` in taskbars and pagers. Call after showing it.
    static void skipTaskbar(QWindow& window);
};

} // namespace Tessaline
