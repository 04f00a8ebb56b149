// SPDX-License-Identifier: MIT
#include "platform/x11/XcbHotKeyKeysyms.h"

#include <hotkey/Key.h>
#include <hotkey/ModifierFlags.h>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <utility>

namespace Tessaline {
namespace {

using HotKey::Key;

// The symbol each key produces on a US layout without modifiers.
constexpr std::pair<Key, quint32> kKeysyms[] = {
    {Key::a, XKB_KEY_a},
    {Key::b, XKB_KEY_b},
    {Key::c, XKB_KEY_c},
    {Key::d, XKB_KEY_d},
    {Key::e, XKB_KEY_e},
    {Key::f, XKB_KEY_f},
    {Key::g, XKB_KEY_g},
    {Key::h, XKB_KEY_h},
    {Key::i, XKB_KEY_i},
    {Key::j, XKB_KEY_j},
    {Key::k, XKB_KEY_k},
    {Key::l, XKB_KEY_l},
    {Key::m, XKB_KEY_m},
    {Key::n, XKB_KEY_n},
    {Key::o, XKB_KEY_o},
    {Key::p, XKB_KEY_p},
    {Key::q, XKB_KEY_q},
    {Key::r, XKB_KEY_r},
    {Key::s, XKB_KEY_s},
    {Key::t, XKB_KEY_t},
    {Key::u, XKB_KEY_u},
    {Key::v, XKB_KEY_v},
    {Key::w, XKB_KEY_w},
    {Key::x, XKB_KEY_x},
    {Key::y, XKB_KEY_y},
    {Key::z, XKB_KEY_z},
    {Key::zero, XKB_KEY_0},
    {Key::one, XKB_KEY_1},
    {Key::two, XKB_KEY_2},
    {Key::three, XKB_KEY_3},
    {Key::four, XKB_KEY_4},
    {Key::five, XKB_KEY_5},
    {Key::six, XKB_KEY_6},
    {Key::seven, XKB_KEY_7},
    {Key::eight, XKB_KEY_8},
    {Key::nine, XKB_KEY_9},
    {Key::period, XKB_KEY_period},
    {Key::quote, XKB_KEY_apostrophe},
    {Key::rightBracket, XKB_KEY_bracketright},
    {Key::semicolon, XKB_KEY_semicolon},
    {Key::slash, XKB_KEY_slash},
    {Key::backslash, XKB_KEY_backslash},
    {Key::comma, XKB_KEY_comma},
    {Key::equal, XKB_KEY_equal},
    {Key::grave, XKB_KEY_grave},
    {Key::leftBracket, XKB_KEY_bracketleft},
    {Key::minus, XKB_KEY_minus},
    {Key::section, XKB_KEY_section},
    {Key::space, XKB_KEY_space},
    {Key::tab, XKB_KEY_Tab},
    {Key::return_, XKB_KEY_Return},
    {Key::command, XKB_KEY_Super_L},
    {Key::rightCommand, XKB_KEY_Super_R},
    {Key::option, XKB_KEY_Alt_L},
    {Key::rightOption, XKB_KEY_Alt_R},
    {Key::control, XKB_KEY_Control_L},
    {Key::rightControl, XKB_KEY_Control_R},
    {Key::shift, XKB_KEY_Shift_L},
    {Key::rightShift, XKB_KEY_Shift_R},
    {Key::capsLock, XKB_KEY_Caps_Lock},
    {Key::pageUp, XKB_KEY_Prior},
    {Key::pageDown, XKB_KEY_Next},
    {Key::home, XKB_KEY_Home},
    {Key::end, XKB_KEY_End},
    {Key::upArrow, XKB_KEY_Up},
    {Key::rightArrow, XKB_KEY_Right},
    {Key::downArrow, XKB_KEY_Down},
    {Key::leftArrow, XKB_KEY_Left},
    {Key::f1, XKB_KEY_F1},
    {Key::f2, XKB_KEY_F2},
    {Key::f3, XKB_KEY_F3},
    {Key::f4, XKB_KEY_F4},
    {Key::f5, XKB_KEY_F5},
    {Key::f6, XKB_KEY_F6},
    {Key::f7, XKB_KEY_F7},
    {Key::f8, XKB_KEY_F8},
    {Key::f9, XKB_KEY_F9},
    {Key::f10, XKB_KEY_F10},
    {Key::f11, XKB_KEY_F11},
    {Key::f12, XKB_KEY_F12},
    {Key::f13, XKB_KEY_F13},
    {Key::f14, XKB_KEY_F14},
    {Key::f15, XKB_KEY_F15},
    {Key::f16, XKB_KEY_F16},
    {Key::f17, XKB_KEY_F17},
    {Key::f18, XKB_KEY_F18},
    {Key::f19, XKB_KEY_F19},
    {Key::f20, XKB_KEY_F20},
    {Key::keypad0, XKB_KEY_KP_0},
    {Key::keypad1, XKB_KEY_KP_1},
    {Key::keypad2, XKB_KEY_KP_2},
    {Key::keypad3, XKB_KEY_KP_3},
    {Key::keypad4, XKB_KEY_KP_4},
    {Key::keypad5, XKB_KEY_KP_5},
    {Key::keypad6, XKB_KEY_KP_6},
    {Key::keypad7, XKB_KEY_KP_7},
    {Key::keypad8, XKB_KEY_KP_8},
    {Key::keypad9, XKB_KEY_KP_9},
    {Key::keypadClear, XKB_KEY_Clear},
    {Key::keypadDecimal, XKB_KEY_KP_Decimal},
    {Key::keypadDivide, XKB_KEY_KP_Divide},
    {Key::keypadEnter, XKB_KEY_KP_Enter},
    {Key::keypadEquals, XKB_KEY_KP_Equal},
    {Key::keypadMinus, XKB_KEY_KP_Subtract},
    {Key::keypadMultiply, XKB_KEY_KP_Multiply},
    {Key::keypadPlus, XKB_KEY_KP_Add},
    {Key::escape, XKB_KEY_Escape},
    {Key::delete_, XKB_KEY_BackSpace},
    {Key::forwardDelete, XKB_KEY_Delete},
    // PC keyboards have Insert where the Help key sits.
    {Key::help, XKB_KEY_Insert},
    {Key::volumeUp, XKB_KEY_XF86AudioRaiseVolume},
    {Key::volumeDown, XKB_KEY_XF86AudioLowerVolume},
    {Key::mute, XKB_KEY_XF86AudioMute},
};

} // namespace

std::optional<quint32> XcbHotKeyKeysyms::keysym(quint32 carbonKeyCode)
{
    const auto key = HotKey::keyFromCarbonKeyCode(carbonKeyCode);
    if (!key)
        return std::nullopt;
    for (const auto& [candidate, symbol] : kKeysyms) {
        if (candidate == *key)
            return symbol;
    }
    return std::nullopt;
}

std::optional<quint32> XcbHotKeyKeysyms::carbonKeyCode(quint32 keysym)
{
    const quint32 lower = xkb_keysym_to_lower(keysym);
    for (const auto& [key, symbol] : kKeysyms) {
        if (symbol == lower || symbol == keysym)
            return HotKey::carbonKeyCode(key);
    }
    return std::nullopt;
}

std::optional<HotKey::KeyCombo> XcbHotKeyKeysyms::parseAccelerator(const QString& accelerator)
{
    QString rest = accelerator.trimmed();
    if (rest.isEmpty() || rest == QLatin1String("disabled"))
        return std::nullopt;

    quint32 modifiers = 0;
    while (rest.startsWith(QLatin1Char('<'))) {
        const qsizetype close = rest.indexOf(QLatin1Char('>'));
        if (close < 0)
            return std::nullopt;
        const QString name = rest.mid(1, close - 1).toLower();
        rest = rest.mid(close + 1);
        if (name == QLatin1String("control") || name == QLatin1String("ctrl") ||
            name == QLatin1String("ctl") || name == QLatin1String("primary"))
            modifiers |= HotKey::CarbonModifier::control;
        else if (name == QLatin1String("alt") || name == QLatin1String("mod1"))
            modifiers |= HotKey::CarbonModifier::option;
        else if (name == QLatin1String("shift") || name == QLatin1String("shft"))
            modifiers |= HotKey::CarbonModifier::shift;
        else if (name == QLatin1String("super") || name == QLatin1String("mod4") ||
                 name == QLatin1String("meta"))
            modifiers |= HotKey::CarbonModifier::command;
        else
            return std::nullopt; // Hyper, Mod3, ...: not a modifier a hot key can carry
    }
    if (rest.isEmpty())
        return std::nullopt;
    const xkb_keysym_t symbol =
        xkb_keysym_from_name(rest.toUtf8().constData(), XKB_KEYSYM_CASE_INSENSITIVE);
    if (symbol == XKB_KEY_NoSymbol)
        return std::nullopt;
    const auto code = carbonKeyCode(symbol);
    if (!code)
        return std::nullopt;
    return HotKey::KeyCombo(*code, modifiers);
}

} // namespace Tessaline
