// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace Tessaline {

/// How chords are drawn for the user. The vault always stores the symbol form ("⌃ ⇧ S", keys
/// after the modifier symbols ⌃ ⌥ ⇧ ⌘, single spaces); Linux desktops write the same chord
/// in words ("Ctrl+Shift+S").
enum class KeyNameStyle
{
    Words,
    Symbols,
};

/// Converts chords between the stored symbol form and the words Linux users write, and reads
/// key words in search queries.
namespace ChordText {

/// `chord` as it is drawn in `style`: in words for Words; for Symbols the stored form with
/// the Super key written "Super", since no key on a Linux keyboard carries the ⌘ symbol
/// ("⌃ ⌘ Q" -> "⌃ Super Q").
QString display(const QString& chord, KeyNameStyle style);

/// The stored chord with each ⌘ written "Super", spaced from the key that follows it.
QString toSymbols(const QString& chord);

/// The stored chord in words: ⌃ Ctrl, ⌥ Alt, ⇧ Shift, ⌘ Super, the arrows Left, Right, Up and
/// Down, parts joined with "+" ("⌃ ⇧ S" -> "Ctrl+Shift+S"); a sequence keeps its ", "
/// ("⌃ K, ⌃ C" -> "Ctrl+K, Ctrl+C"). Text that holds no modifier symbol or arrow is returned
/// as it is.
QString toWords(const QString& chord);

/// When `query` names at least one modifier in words ("ctrl s", "Ctrl+Shift+S", "super
/// space"), the same chord in the stored symbol form ("⌃ S", "⌃ ⇧ S", "⌘ Space"), modifiers in
/// their fixed order; nothing for any other query, which is searched as it is typed.
std::optional<QString> symbolQuery(const QString& query);

/// `chord` written in either form ("Ctrl+Shift+S", "⌃ ⇧ S", "shift+ctrl+s", "⌃⇧S") as one
/// canonical text: the stored symbol form with the modifiers in their fixed order, the key's
/// stored name ("Page Up", "←", "Esc", "F5") and single spaces; a sequence keeps its ", "
/// between chords. Texts that name the same keys give the same result, so it serves as the
/// key under which chords are compared. None when the text names no key.
std::optional<QString> normalized(const QString& chord);

/// The chord of a key by its Carbon code with Carbon modifier bits (control 0x1000, option
/// 0x800, shift 0x200, command 0x100), in the form normalized() gives; none when the code
/// names no key.
std::optional<QString> fromKeyCode(quint32 carbonKeyCode, quint32 carbonModifiers);

} // namespace ChordText

} // namespace Tessaline
