// SPDX-License-Identifier: MIT
#pragma once

#include "hotkey/Key.h"
#include "hotkey/KeyCombo.h"

#include <QString>

#include <optional>

namespace HotKey {

/// Combinations written as the desktop's global-shortcut services take them: the modifier names
/// CTRL, ALT, SHIFT and LOGO and an xkbcommon key name, joined by "+" (e.g. "CTRL+SHIFT+s").
class ShortcutTrigger
{
public:
    ShortcutTrigger() = delete;

    /// The trigger of a combination; none when its key has no key name (Fn, unknown codes).
    static std::optional<QString> fromCombo(const KeyCombo& combo);

    /// The xkbcommon name of the symbol the key types on a US layout without modifiers ("k",
    /// "bracketright", "Prior"); none for the Fn key, which produces no symbol.
    static std::optional<QString> keyName(Key key);
};

} // namespace HotKey
