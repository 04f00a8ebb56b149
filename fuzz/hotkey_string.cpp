// SPDX-License-Identifier: MIT
// Feeds text to the hot-key module's readers of written keys: the key names of the settings and
// the GTK accelerators ("<Primary><Alt>t") the desktop stores its own hot keys as. A combo read
// from an accelerator always names a key the module has and an X keysym for it.
#include "FuzzInput.h"

#include "hotkey/Key.h"
#include "hotkey/KeyCombo.h"
#include "hotkey/ModifierFlags.h"
#include "platform/x11/XcbHotKeyKeysyms.h"

using namespace Tessaline;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = FuzzInput::fields(data, size, 1).at(0);

    const std::optional<HotKey::Key> key = HotKey::keyFromString(text);
    FuzzInput::require(HotKey::keyFromString(text.toLower()) == key,
                       "key names are read regardless of case", text);
    if (key)
        FuzzInput::require(HotKey::keyFromCarbonKeyCode(HotKey::carbonKeyCode(*key)) == key,
                           "a named key is found again by its code", text);

    const std::optional<HotKey::KeyCombo> combo = XcbHotKeyKeysyms::parseAccelerator(text);
    if (!combo)
        return 0;
    constexpr quint32 kModifierBits =
        HotKey::CarbonModifier::command | HotKey::CarbonModifier::shift |
        HotKey::CarbonModifier::option | HotKey::CarbonModifier::control;
    FuzzInput::require((combo->carbonModifiers & ~kModifierBits) == 0,
                       "an accelerator carries only the four modifiers", text);
    FuzzInput::require(combo->key().has_value(), "an accelerator names a known key", text);
    FuzzInput::require(XcbHotKeyKeysyms::keysym(combo->carbonKeyCode).has_value(),
                       "an accelerator's key has a keysym", text);
    FuzzInput::require(
        XcbHotKeyKeysyms::parseAccelerator(QLatin1Char(' ') + text + QLatin1Char('\t')) == combo,
        "white space around an accelerator is ignored", text);
    return 0;
}
