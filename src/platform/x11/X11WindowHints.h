// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowHints.h"

namespace Tessaline {

/// Window hints through the window manager's extended hints (_NET_WM_STATE). Does nothing off
/// X11.
class X11WindowHints final : public WindowHints
{
public:
    /// Asks the window manager to skip `window` in taskbars and pagers.
    void skipTaskbar(QWindow& window) override;
};

} // namespace Tessaline
