// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace HotKey {

/// Carbon modifier bits, the form in which hot keys and the user's settings hold modifiers.
namespace CarbonModifier {
inline constexpr quint32 command = 0x100;
inline constexpr quint32 shift = 0x200;
inline constexpr quint32 option = 0x800;
inline constexpr quint32 control = 0x1000;
} // namespace CarbonModifier

/// The platform's modifier flags of a key event. Only the four flags below are converted to and
/// from Carbon bits; any other flag is kept in `rawValue` but ignored by the conversions.
struct ModifierFlags
{
    static constexpr quint64 shift = 0x20000;
    static constexpr quint64 control = 0x40000;
    static constexpr quint64 option = 0x80000;
    static constexpr quint64 command = 0x100000;

    quint64 rawValue = 0;

    constexpr ModifierFlags() = default;
    constexpr explicit ModifierFlags(quint64 raw) : rawValue(raw) {}

    /// Flags converted from Carbon bits.
    static ModifierFlags fromCarbonFlags(quint32 carbonFlags);

    constexpr bool contains(quint64 flags) const { return (rawValue & flags) == flags; }
    constexpr ModifierFlags operator|(ModifierFlags other) const
    {
        return ModifierFlags(rawValue | other.rawValue);
    }
    constexpr bool operator==(const ModifierFlags&) const = default;

    /// Carbon bits of the four convertible flags.
    quint32 carbonFlags() const;

    /// "⌃", "⌥", "⇧", "⌘" for each present flag, always in this order; empty for none.
    QString description() const;
};

} // namespace HotKey
