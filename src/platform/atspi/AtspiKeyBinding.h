// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace Tessaline {

/// A menu item's keyboard equivalent in the form the menu scanner reads: a command character
/// (one printable character, or a key name of several characters), or a virtual key code, and
/// the menu modifier mask (1 Shift, 2 Option/Alt, 4 Control, 8 no Command/Super).
struct MenuKeyEquivalent
{
    std::optional<QString> character;
    std::optional<int> virtualKey;
    int modifiers = 0;

    friend bool operator==(const MenuKeyEquivalent&, const MenuKeyEquivalent&) = default;
};

/// Turns the key binding an accessible menu item reports into its keyboard equivalent.
///
/// GTK reports "mnemonic;path;accelerator" (e.g. "s;<Alt>f:s;<Primary>s"): only the
/// accelerator, written with keysym names, is a shortcut. Qt reports key-sequence text
/// ("Ctrl+Shift+N", "Del", "Ctrl+K, Ctrl+C"), and for an item without a shortcut its mnemonic
/// as "Alt+<letter>", which is not a shortcut when `title` holds that letter. A sequence of
/// several chords stays whole as one multi-character key with no modifiers.
namespace AtspiKeyBinding {

std::optional<MenuKeyEquivalent> parse(const QString& binding, const QString& title);

/// The macOS virtual key code the scanner knows for a keysym name ("Up" -> 126), if any.
std::optional<int> virtualKeyForKeysymName(const QString& name);

} // namespace AtspiKeyBinding

} // namespace Tessaline
