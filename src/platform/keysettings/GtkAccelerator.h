// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeyBinding.h"

#include <optional>

namespace Tessaline {

/// Reads the accelerator strings GTK desktops store in their settings ("<Shift>Print",
/// "<Primary><Alt>t", "XF86AudioRaiseVolume").
class GtkAccelerator
{
public:
    /// The binding an accelerator names; absent for "", "disabled" and anything unreadable.
    static std::optional<DesktopKeyBinding> parse(const QString& accelerator);
    /// How people read the key an X keysym name stands for ("XF86AudioRaiseVolume" is
    /// "Volume Up", "t" is "T"); names without a reading of their own stay as they are.
    static QString keyName(const QString& keysymName);
};

} // namespace Tessaline
