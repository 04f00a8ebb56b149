// SPDX-License-Identifier: MIT
#pragma once

#include <hotkey/KeyCombo.h>

#include <QString>

#include <optional>

namespace Tessaline {

/// Translation between the Carbon key codes that hot keys are stored with and X keysyms, and
/// the reading of GTK-style accelerators ("<Primary><Alt>t") into combos.
class XcbHotKeyKeysyms
{
public:
    XcbHotKeyKeysyms() = delete;

    /// The keysym of the key at a Carbon code; none for codes that name no key or a key X has
    /// no symbol for (fn).
    static std::optional<quint32> keysym(quint32 carbonKeyCode);

    /// The Carbon code of a keysym; letters in either case give their key.
    static std::optional<quint32> carbonKeyCode(quint32 keysym);

    /// A combo from an accelerator such as "<Super>Left", "<Primary><Shift>s" or "Print".
    /// Control, Primary, Alt, Shift and Super (also Mod1, Mod4, Meta) are understood; none
    /// when the text is empty, "disabled", names another modifier or a key without a code.
    static std::optional<HotKey::KeyCombo> parseAccelerator(const QString& accelerator);
};

} // namespace Tessaline
