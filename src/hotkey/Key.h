// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace HotKey {

/// The keys of the keyboard that a hot key can use, each with its Carbon virtual key code.
/// Carbon key codes are positional codes of the ANSI keyboard; they are the codes stored in the
/// user's settings, whatever the platform.
enum class Key : quint8
{
    // Letters
    a,
    b,
    c,
    d,
    e,
    f,
    g,
    h,
    i,
    j,
    k,
    l,
    m,
    n,
    o,
    p,
    q,
    r,
    s,
    t,
    u,
    v,
    w,
    x,
    y,
    z,
    // Digits
    zero,
    one,
    two,
    three,
    four,
    five,
    six,
    seven,
    eight,
    nine,
    // Punctuation
    period,
    quote,
    rightBracket,
    semicolon,
    slash,
    backslash,
    comma,
    equal,
    grave,
    leftBracket,
    minus,
    section,
    // White space
    space,
    tab,
    return_,
    // Modifier keys
    command,
    rightCommand,
    option,
    rightOption,
    control,
    rightControl,
    shift,
    rightShift,
    function,
    capsLock,
    // Navigation
    pageUp,
    pageDown,
    home,
    end,
    upArrow,
    rightArrow,
    downArrow,
    leftArrow,
    // Function keys
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
    f11,
    f12,
    f13,
    f14,
    f15,
    f16,
    f17,
    f18,
    f19,
    f20,
    // Keypad
    keypad0,
    keypad1,
    keypad2,
    keypad3,
    keypad4,
    keypad5,
    keypad6,
    keypad7,
    keypad8,
    keypad9,
    keypadClear,
    keypadDecimal,
    keypadDivide,
    keypadEnter,
    keypadEquals,
    keypadMinus,
    keypadMultiply,
    keypadPlus,
    // Others
    escape,
    delete_,
    forwardDelete,
    help,
    volumeUp,
    volumeDown,
    mute,
};

/// Every key, in declaration order.
const QList<Key>& allKeys();

/// The key's Carbon virtual key code.
quint32 carbonKeyCode(Key key);

/// The key whose Carbon code is `code`; codes above 126 and the unused codes give none.
std::optional<Key> keyFromCarbonKeyCode(quint32 code);

/// The key named by `string` (compared lower-cased) in one of its accepted written forms.
std::optional<Key> keyFromString(const QString& string);

/// A short display form of the key ("K", "F5", "⇥", ...).
QString keyDescription(Key key);

/// The key's name in the hot-key chords shown in the settings ("K", "Return", "←"): letters,
/// digits, Return, Tab, Space, Escape and the arrows have one.
std::optional<QString> chordKeyName(Key key);

/// The key's name in chords read from application menus ("Return", "F5", "Page Up"): the
/// white-space, deleting, function and navigation keys have one.
std::optional<QString> menuKeyName(Key key);

/// The key's name in code ("k", "rightBracket", "return"), for messages and tests.
QString keyName(Key key);

} // namespace HotKey
