// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyKeyEvent.h"

#include <QtCore/qnamespace.h>

#include <optional>

namespace Tessaline {

/// Translates Qt key events into Carbon key codes and platform modifier flags, the form in which
/// the hotkey is stored and registered.
class QtKeyMapping
{
public:
    QtKeyMapping() = delete;

    /// The Carbon code of a Qt key. Keys typed with Shift on a US layout ("!", "{", ...) give
    /// the code of their unshifted key; digits and operators with the keypad modifier give the
    /// keypad's codes. When the Qt key is unknown, the X keycode in `nativeScanCode` gives the
    /// key by its position. None when neither names a key.
    static std::optional<quint32> carbonKeyCode(int qtKey, Qt::KeyboardModifiers modifiers,
                                                quint32 nativeScanCode = 0);

    /// Platform flags of Qt modifiers: Shift, Control, Alt as option, Meta (Super) as command.
    static quint64 modifierFlags(Qt::KeyboardModifiers modifiers);

    /// True for the keys that only modify others (Shift, Control, Alt, Super, Caps Lock, ...).
    static bool isModifierKey(int qtKey);

    /// The recorder's event for a Qt key press; none when the key has no Carbon code.
    static std::optional<HotkeyKeyEvent> keyEvent(int qtKey, Qt::KeyboardModifiers modifiers,
                                                  quint32 nativeScanCode = 0);
};

} // namespace Tessaline
