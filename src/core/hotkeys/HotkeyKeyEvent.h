// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace Tessaline {

/// A key press as the hotkey recorder sees it: the Carbon key code and the platform modifier
/// flags (shift 0x20000, control 0x40000, option 0x80000, command 0x100000).
struct HotkeyKeyEvent
{
    quint32 keyCode = 0;
    quint64 modifierFlags = 0;
    constexpr bool operator==(const HotkeyKeyEvent&) const = default;
};

} // namespace Tessaline
