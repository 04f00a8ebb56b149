// SPDX-License-Identifier: MIT
#include "platform/DesktopKeyBinding.h"

#include <array>
#include <utility>

namespace Tessaline {

QString DesktopKeyBinding::text() const
{
    // Super first, as KDE and Qt write it; then Ctrl, Alt, Shift as every desktop does.
    static const std::array<std::pair<Modifier, const char*>, 4> kNames{{
        {Super, "Super"},
        {Ctrl, "Ctrl"},
        {Alt, "Alt"},
        {Shift, "Shift"},
    }};
    QString result;
    for (const auto& [flag, name] : kNames) {
        if (modifiers & flag)
            result += QLatin1String(name) + QLatin1Char('+');
    }
    return result + key;
}

} // namespace Tessaline
