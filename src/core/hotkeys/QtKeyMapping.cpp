// SPDX-License-Identifier: MIT
#include "hotkeys/QtKeyMapping.h"

#include <hotkey/Key.h>
#include <hotkey/ModifierFlags.h>

namespace Tessaline {
namespace {

using HotKey::Key;

quint32 code(Key key)
{
    return HotKey::carbonKeyCode(key);
}

std::optional<quint32> keypadCode(int qtKey)
{
    switch (qtKey) {
    case Qt::Key_0:
        return code(Key::keypad0);
    case Qt::Key_1:
        return code(Key::keypad1);
    case Qt::Key_2:
        return code(Key::keypad2);
    case Qt::Key_3:
        return code(Key::keypad3);
    case Qt::Key_4:
        return code(Key::keypad4);
    case Qt::Key_5:
        return code(Key::keypad5);
    case Qt::Key_6:
        return code(Key::keypad6);
    case Qt::Key_7:
        return code(Key::keypad7);
    case Qt::Key_8:
        return code(Key::keypad8);
    case Qt::Key_9:
        return code(Key::keypad9);
    case Qt::Key_Period:
    case Qt::Key_Comma:
        return code(Key::keypadDecimal);
    case Qt::Key_Slash:
        return code(Key::keypadDivide);
    case Qt::Key_Asterisk:
        return code(Key::keypadMultiply);
    case Qt::Key_Minus:
        return code(Key::keypadMinus);
    case Qt::Key_Plus:
        return code(Key::keypadPlus);
    case Qt::Key_Equal:
        return code(Key::keypadEquals);
    case Qt::Key_Enter:
        return code(Key::keypadEnter);
    case Qt::Key_Clear:
        return code(Key::keypadClear);
    default:
        return std::nullopt;
    }
}

std::optional<quint32> mainCode(int qtKey)
{
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return code(static_cast<Key>(static_cast<int>(Key::a) + (qtKey - Qt::Key_A)));
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F20)
        return code(static_cast<Key>(static_cast<int>(Key::f1) + (qtKey - Qt::Key_F1)));

    switch (qtKey) {
    // Digits and, on a US layout, the symbols typed on them with Shift.
    case Qt::Key_0:
    case Qt::Key_ParenRight:
        return code(Key::zero);
    case Qt::Key_1:
    case Qt::Key_Exclam:
        return code(Key::one);
    case Qt::Key_2:
    case Qt::Key_At:
        return code(Key::two);
    case Qt::Key_3:
    case Qt::Key_NumberSign:
        return code(Key::three);
    case Qt::Key_4:
    case Qt::Key_Dollar:
        return code(Key::four);
    case Qt::Key_5:
    case Qt::Key_Percent:
        return code(Key::five);
    case Qt::Key_6:
    case Qt::Key_AsciiCircum:
        return code(Key::six);
    case Qt::Key_7:
    case Qt::Key_Ampersand:
        return code(Key::seven);
    case Qt::Key_8:
    case Qt::Key_Asterisk:
        return code(Key::eight);
    case Qt::Key_9:
    case Qt::Key_ParenLeft:
        return code(Key::nine);

    case Qt::Key_Period:
    case Qt::Key_Greater:
        return code(Key::period);
    case Qt::Key_Apostrophe:
    case Qt::Key_QuoteDbl:
        return code(Key::quote);
    case Qt::Key_BracketRight:
    case Qt::Key_BraceRight:
        return code(Key::rightBracket);
    case Qt::Key_Semicolon:
    case Qt::Key_Colon:
        return code(Key::semicolon);
    case Qt::Key_Slash:
    case Qt::Key_Question:
        return code(Key::slash);
    case Qt::Key_Backslash:
    case Qt::Key_Bar:
        return code(Key::backslash);
    case Qt::Key_Comma:
    case Qt::Key_Less:
        return code(Key::comma);
    case Qt::Key_Equal:
    case Qt::Key_Plus:
        return code(Key::equal);
    case Qt::Key_QuoteLeft:
    case Qt::Key_AsciiTilde:
        return code(Key::grave);
    case Qt::Key_BracketLeft:
    case Qt::Key_BraceLeft:
        return code(Key::leftBracket);
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
        return code(Key::minus);
    case Qt::Key_section:
        return code(Key::section);

    case Qt::Key_Space:
        return code(Key::space);
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return code(Key::tab);
    case Qt::Key_Return:
        return code(Key::return_);
    case Qt::Key_Enter:
        return code(Key::keypadEnter);
    case Qt::Key_Escape:
        return code(Key::escape);
    case Qt::Key_Backspace:
        return code(Key::delete_);
    case Qt::Key_Delete:
        return code(Key::forwardDelete);
    // PC keyboards have Insert where the Help key sits.
    case Qt::Key_Help:
    case Qt::Key_Insert:
        return code(Key::help);
    case Qt::Key_Clear:
        return code(Key::keypadClear);

    case Qt::Key_Home:
        return code(Key::home);
    case Qt::Key_End:
        return code(Key::end);
    case Qt::Key_PageUp:
        return code(Key::pageUp);
    case Qt::Key_PageDown:
        return code(Key::pageDown);
    case Qt::Key_Left:
        return code(Key::leftArrow);
    case Qt::Key_Right:
        return code(Key::rightArrow);
    case Qt::Key_Up:
        return code(Key::upArrow);
    case Qt::Key_Down:
        return code(Key::downArrow);

    case Qt::Key_Shift:
        return code(Key::shift);
    case Qt::Key_Control:
        return code(Key::control);
    case Qt::Key_Alt:
        return code(Key::option);
    case Qt::Key_AltGr:
        return code(Key::rightOption);
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
        return code(Key::command);
    case Qt::Key_Super_R:
        return code(Key::rightCommand);
    case Qt::Key_CapsLock:
        return code(Key::capsLock);

    case Qt::Key_VolumeUp:
        return code(Key::volumeUp);
    case Qt::Key_VolumeDown:
        return code(Key::volumeDown);
    case Qt::Key_VolumeMute:
        return code(Key::mute);
    default:
        return std::nullopt;
    }
}

// X keycodes (evdev codes + 8) of the main block, by position, for keys whose symbol the
// current layout names in a way Qt has no key for (a Cyrillic letter, for instance).
std::optional<quint32> positionalCode(quint32 xKeycode)
{
    switch (xKeycode) {
    case 9:
        return code(Key::escape);
    case 10:
        return code(Key::one);
    case 11:
        return code(Key::two);
    case 12:
        return code(Key::three);
    case 13:
        return code(Key::four);
    case 14:
        return code(Key::five);
    case 15:
        return code(Key::six);
    case 16:
        return code(Key::seven);
    case 17:
        return code(Key::eight);
    case 18:
        return code(Key::nine);
    case 19:
        return code(Key::zero);
    case 20:
        return code(Key::minus);
    case 21:
        return code(Key::equal);
    case 22:
        return code(Key::delete_);
    case 23:
        return code(Key::tab);
    case 24:
        return code(Key::q);
    case 25:
        return code(Key::w);
    case 26:
        return code(Key::e);
    case 27:
        return code(Key::r);
    case 28:
        return code(Key::t);
    case 29:
        return code(Key::y);
    case 30:
        return code(Key::u);
    case 31:
        return code(Key::i);
    case 32:
        return code(Key::o);
    case 33:
        return code(Key::p);
    case 34:
        return code(Key::leftBracket);
    case 35:
        return code(Key::rightBracket);
    case 36:
        return code(Key::return_);
    case 38:
        return code(Key::a);
    case 39:
        return code(Key::s);
    case 40:
        return code(Key::d);
    case 41:
        return code(Key::f);
    case 42:
        return code(Key::g);
    case 43:
        return code(Key::h);
    case 44:
        return code(Key::j);
    case 45:
        return code(Key::k);
    case 46:
        return code(Key::l);
    case 47:
        return code(Key::semicolon);
    case 48:
        return code(Key::quote);
    case 49:
        return code(Key::grave);
    case 51:
        return code(Key::backslash);
    case 52:
        return code(Key::z);
    case 53:
        return code(Key::x);
    case 54:
        return code(Key::c);
    case 55:
        return code(Key::v);
    case 56:
        return code(Key::b);
    case 57:
        return code(Key::n);
    case 58:
        return code(Key::m);
    case 59:
        return code(Key::comma);
    case 60:
        return code(Key::period);
    case 61:
        return code(Key::slash);
    case 65:
        return code(Key::space);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<quint32> QtKeyMapping::carbonKeyCode(int qtKey, Qt::KeyboardModifiers modifiers,
                                                   quint32 nativeScanCode)
{
    if (modifiers.testFlag(Qt::KeypadModifier)) {
        if (const auto keypad = keypadCode(qtKey))
            return keypad;
    }
    if (const auto main = mainCode(qtKey))
        return main;
    return positionalCode(nativeScanCode);
}

quint64 QtKeyMapping::modifierFlags(Qt::KeyboardModifiers modifiers)
{
    quint64 flags = 0;
    if (modifiers.testFlag(Qt::ShiftModifier))
        flags |= HotKey::ModifierFlags::shift;
    if (modifiers.testFlag(Qt::ControlModifier))
        flags |= HotKey::ModifierFlags::control;
    if (modifiers.testFlag(Qt::AltModifier))
        flags |= HotKey::ModifierFlags::option;
    if (modifiers.testFlag(Qt::MetaModifier))
        flags |= HotKey::ModifierFlags::command;
    return flags;
}

bool QtKeyMapping::isModifierKey(int qtKey)
{
    switch (qtKey) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

std::optional<HotkeyKeyEvent> QtKeyMapping::keyEvent(int qtKey, Qt::KeyboardModifiers modifiers,
                                                     quint32 nativeScanCode)
{
    const auto keyCode = carbonKeyCode(qtKey, modifiers, nativeScanCode);
    if (!keyCode)
        return std::nullopt;
    return HotkeyKeyEvent{*keyCode, modifierFlags(modifiers)};
}

} // namespace Tessaline
