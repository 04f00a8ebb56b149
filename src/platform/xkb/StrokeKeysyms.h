// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

#include <QList>

namespace Tessaline {

/// The keysyms that type a chord: the modifier keys it holds down and the key pressed under
/// them, named as xkbcommon names them. No keyboard layout is consulted here.
class StrokeKeysyms
{
public:
    /// No symbol: the key names nothing xkbcommon knows.
    static constexpr quint32 noSymbol = 0;
    static constexpr quint32 controlL = 0xffe3; // Control_L
    static constexpr quint32 lowerV = 0x0076;   // v

    /// The keysym of a chord's key: one character (a letter in lower case, since Shift is a
    /// modifier of the chord of its own) or a keysym name, matched exactly first and then
    /// without regard to case ("Return", "page_up"). noSymbol when it names no key.
    static quint32 keysymOf(const QString& key);

    /// The left-hand modifier keys `modifiers` (KeyStroke::Modifier values) holds down, in the
    /// order they are pressed: Control, Alt, Shift, Super.
    static QList<quint32> modifierKeysyms(int modifiers);
};

} // namespace Tessaline
