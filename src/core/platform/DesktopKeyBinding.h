// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Tessaline {

/// One key combination the desktop has bound: modifiers plus a key, the key already named the
/// way people read it ("Print", "Volume Up", "R").
struct DesktopKeyBinding
{
    enum Modifier : unsigned
    {
        Ctrl = 0x1,
        Alt = 0x2,
        Shift = 0x4,
        Super = 0x8,
    };

    unsigned modifiers = 0;
    QString key;

    /// The combination as Linux desktops write it: "Super+Shift+Print", "Shift+Volume Up".
    QString text() const;

    friend bool operator==(const DesktopKeyBinding&, const DesktopKeyBinding&) = default;
};

} // namespace Tessaline
