// SPDX-License-Identifier: MIT
#include "hotkey/ModifierFlags.h"

namespace HotKey {

ModifierFlags ModifierFlags::fromCarbonFlags(quint32 carbonFlags)
{
    quint64 raw = 0;
    if (carbonFlags & CarbonModifier::command)
        raw |= command;
    if (carbonFlags & CarbonModifier::option)
        raw |= option;
    if (carbonFlags & CarbonModifier::control)
        raw |= control;
    if (carbonFlags & CarbonModifier::shift)
        raw |= shift;
    return ModifierFlags(raw);
}

quint32 ModifierFlags::carbonFlags() const
{
    quint32 bits = 0;
    if (contains(command))
        bits |= CarbonModifier::command;
    if (contains(option))
        bits |= CarbonModifier::option;
    if (contains(control))
        bits |= CarbonModifier::control;
    if (contains(shift))
        bits |= CarbonModifier::shift;
    return bits;
}

QString ModifierFlags::description() const
{
    QString text;
    if (contains(control))
        text += QChar(0x2303); // ⌃
    if (contains(option))
        text += QChar(0x2325); // ⌥
    if (contains(shift))
        text += QChar(0x21E7); // ⇧
    if (contains(command))
        text += QChar(0x2318); // ⌘
    return text;
}

} // namespace HotKey
