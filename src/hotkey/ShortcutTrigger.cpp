// SPDX-License-Identifier: MIT
#include "hotkey/ShortcutTrigger.h"

#include "hotkey/ModifierFlags.h"

#include <QStringList>

#include <utility>

namespace HotKey {
namespace {

// Names of the keys whose symbol is not the key's own character. Letters and digits are their
// character; the function keys are "F1" ... "F20" and the keypad's digits "KP_0" ... "KP_9".
constexpr std::pair<Key, const char*> kNamedKeys[] = {
    {Key::period, "period"},
    {Key::quote, "apostrophe"},
    {Key::rightBracket, "bracketright"},
    {Key::semicolon, "semicolon"},
    {Key::slash, "slash"},
    {Key::backslash, "backslash"},
    {Key::comma, "comma"},
    {Key::equal, "equal"},
    {Key::grave, "grave"},
    {Key::leftBracket, "bracketleft"},
    {Key::minus, "minus"},
    {Key::section, "section"},
    {Key::space, "space"},
    {Key::tab, "Tab"},
    {Key::return_, "Return"},
    {Key::command, "Super_L"},
    {Key::rightCommand, "Super_R"},
    {Key::option, "Alt_L"},
    {Key::rightOption, "Alt_R"},
    {Key::control, "Control_L"},
    {Key::rightControl, "Control_R"},
    {Key::shift, "Shift_L"},
    {Key::rightShift, "Shift_R"},
    {Key::capsLock, "Caps_Lock"},
    {Key::pageUp, "Prior"},
    {Key::pageDown, "Next"},
    {Key::home, "Home"},
    {Key::end, "End"},
    {Key::upArrow, "Up"},
    {Key::rightArrow, "Right"},
    {Key::downArrow, "Down"},
    {Key::leftArrow, "Left"},
    {Key::keypadClear, "Clear"},
    {Key::keypadDecimal, "KP_Decimal"},
    {Key::keypadDivide, "KP_Divide"},
    {Key::keypadEnter, "KP_Enter"},
    {Key::keypadEquals, "KP_Equal"},
    {Key::keypadMinus, "KP_Subtract"},
    {Key::keypadMultiply, "KP_Multiply"},
    {Key::keypadPlus, "KP_Add"},
    {Key::escape, "Escape"},
    {Key::delete_, "BackSpace"},
    {Key::forwardDelete, "Delete"},
    // PC keyboards have Insert where the Help key sits.
    {Key::help, "Insert"},
    {Key::volumeUp, "XF86AudioRaiseVolume"},
    {Key::volumeDown, "XF86AudioLowerVolume"},
    {Key::mute, "XF86AudioMute"},
};

// Modifier names in the order a trigger lists them.
constexpr std::pair<quint32, const char*> kModifierNames[] = {
    {CarbonModifier::control, "CTRL"},
    {CarbonModifier::option, "ALT"},
    {CarbonModifier::shift, "SHIFT"},
    {CarbonModifier::command, "LOGO"},
};

bool isBetween(Key key, Key first, Key last)
{
    return static_cast<int>(key) >= static_cast<int>(first) &&
           static_cast<int>(key) <= static_cast<int>(last);
}

int offset(Key key, Key first)
{
    return static_cast<int>(key) - static_cast<int>(first);
}

} // namespace

std::optional<QString> ShortcutTrigger::keyName(Key key)
{
    // The enumeration keeps letters, digits, function keys and keypad digits in runs.
    if (isBetween(key, Key::a, Key::z))
        return QString(QChar(u'a' + offset(key, Key::a)));
    if (isBetween(key, Key::zero, Key::nine))
        return QString::number(offset(key, Key::zero));
    if (isBetween(key, Key::f1, Key::f20))
        return QStringLiteral("F%1").arg(offset(key, Key::f1) + 1);
    if (isBetween(key, Key::keypad0, Key::keypad9))
        return QStringLiteral("KP_%1").arg(offset(key, Key::keypad0));
    for (const auto& [candidate, name] : kNamedKeys) {
        if (candidate == key)
            return QString::fromLatin1(name);
    }
    return std::nullopt;
}

std::optional<QString> ShortcutTrigger::fromCombo(const KeyCombo& combo)
{
    const std::optional<Key> key = keyFromCarbonKeyCode(combo.carbonKeyCode);
    if (!key)
        return std::nullopt;
    std::optional<QString> name = keyName(*key);
    if (!name)
        return std::nullopt;
    QStringList parts;
    for (const auto& [bit, modifier] : kModifierNames) {
        if (combo.carbonModifiers & bit)
            parts.append(QString::fromLatin1(modifier));
    }
    parts.append(*name);
    return parts.join(QLatin1Char('+'));
}

} // namespace HotKey
