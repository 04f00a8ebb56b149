// SPDX-License-Identifier: MIT
#include "hotkey/Key.h"

#include <array>

namespace HotKey {
namespace {

struct KeyInfo
{
    Key key;
    quint32 code;
    const char16_t* name;
    const char16_t* description;
    // The accepted written forms, lower-case, ending at the first null entry.
    std::array<const char16_t*, 6> forms;
    // The key's name in the hot-key chords of the settings, if it has one there.
    const char16_t* chordName = nullptr;
    // The key's name in chords read from application menus, if it has one there.
    const char16_t* menuName = nullptr;
};

// One row per key, in declaration order.
constexpr KeyInfo kKeys[] = {
    {Key::a, 0, u"a", u"A", {u"a"}, u"A"},
    {Key::b, 11, u"b", u"B", {u"b"}, u"B"},
    {Key::c, 8, u"c", u"C", {u"c"}, u"C"},
    {Key::d, 2, u"d", u"D", {u"d"}, u"D"},
    {Key::e, 14, u"e", u"E", {u"e"}, u"E"},
    {Key::f, 3, u"f", u"F", {u"f"}, u"F"},
    {Key::g, 5, u"g", u"G", {u"g"}, u"G"},
    {Key::h, 4, u"h", u"H", {u"h"}, u"H"},
    {Key::i, 34, u"i", u"I", {u"i"}, u"I"},
    {Key::j, 38, u"j", u"J", {u"j"}, u"J"},
    {Key::k, 40, u"k", u"K", {u"k"}, u"K"},
    {Key::l, 37, u"l", u"L", {u"l"}, u"L"},
    {Key::m, 46, u"m", u"M", {u"m"}, u"M"},
    {Key::n, 45, u"n", u"N", {u"n"}, u"N"},
    {Key::o, 31, u"o", u"O", {u"o"}, u"O"},
    {Key::p, 35, u"p", u"P", {u"p"}, u"P"},
    {Key::q, 12, u"q", u"Q", {u"q"}, u"Q"},
    {Key::r, 15, u"r", u"R", {u"r"}, u"R"},
    {Key::s, 1, u"s", u"S", {u"s"}, u"S"},
    {Key::t, 17, u"t", u"T", {u"t"}, u"T"},
    {Key::u, 32, u"u", u"U", {u"u"}, u"U"},
    {Key::v, 9, u"v", u"V", {u"v"}, u"V"},
    {Key::w, 13, u"w", u"W", {u"w"}, u"W"},
    {Key::x, 7, u"x", u"X", {u"x"}, u"X"},
    {Key::y, 16, u"y", u"Y", {u"y"}, u"Y"},
    {Key::z, 6, u"z", u"Z", {u"z"}, u"Z"},

    {Key::zero, 29, u"zero", u"0", {u"0", u"zero"}, u"0"},
    {Key::one, 18, u"one", u"1", {u"1", u"one"}, u"1"},
    {Key::two, 19, u"two", u"2", {u"2", u"two"}, u"2"},
    {Key::three, 20, u"three", u"3", {u"3", u"three"}, u"3"},
    {Key::four, 21, u"four", u"4", {u"4", u"four"}, u"4"},
    {Key::five, 23, u"five", u"5", {u"5", u"five"}, u"5"},
    {Key::six, 22, u"six", u"6", {u"6", u"six"}, u"6"},
    {Key::seven, 26, u"seven", u"7", {u"7", u"seven"}, u"7"},
    {Key::eight, 28, u"eight", u"8", {u"8", u"eight"}, u"8"},
    {Key::nine, 25, u"nine", u"9", {u"9", u"nine"}, u"9"},

    {Key::period, 47, u"period", u".", {u".", u"period"}},
    {Key::quote, 39, u"quote", u"\"", {u"\"", u"quote"}},
    {Key::rightBracket, 30, u"rightBracket", u"]", {u"]"}},
    {Key::semicolon, 41, u"semicolon", u";", {u";", u"semicolon"}},
    {Key::slash, 44, u"slash", u"/", {u"/", u"slash"}},
    {Key::backslash, 42, u"backslash", u"\\", {u"\\", u"backslash"}},
    {Key::comma, 43, u"comma", u",", {u",", u"comma"}},
    {Key::equal, 24, u"equal", u"=", {u"=", u"equal"}},
    {Key::grave, 50, u"grave", u"`", {u"`", u"\u02CB", u"\uFF40", u"grave"}},
    {Key::leftBracket, 33, u"leftBracket", u"[", {u"["}},
    {Key::minus, 27, u"minus", u"-", {u"-", u"minus"}},
    {Key::section, 10, u"section", u"§", {u"§", u"section"}},

    {Key::space, 49, u"space", u"Space", {u"space", u" ", u"\u2423"}, u"Space", u"Space"},
    {Key::tab, 48, u"tab", u"⇥", {u"tab", u"\t", u"\u21E5"}, u"Tab", u"Tab"},
    {Key::return_,
     36,
     u"return",
     u"↩",
     {u"return", u"\r", u"\u21A9\uFE0E", u"\u23CE", u"\u2B90"},
     u"Return",
     u"Return"},

    {Key::command, 55, u"command", u"⌘", {u"command", u"\u2318", u"\uF8FF"}},
    {Key::rightCommand, 54, u"rightCommand", u"Right ⌘", {u"rightcommand"}},
    {Key::option, 58, u"option", u"⌥", {u"option"}},
    {Key::rightOption, 61, u"rightOption", u"Right ⌥", {u"rightoption"}},
    {Key::control, 59, u"control", u"⌃", {u"control", u"\u2303"}},
    {Key::rightControl, 62, u"rightControl", u"Right ⌃", {u"rightcontrol"}},
    {Key::shift, 56, u"shift", u"⇧", {u"shift", u"\u21E7"}},
    {Key::rightShift, 60, u"rightShift", u"Right ⇧", {u"rightshift"}},
    {Key::function, 63, u"function", u"fn", {u"function", u"fn"}},
    {Key::capsLock, 57, u"capsLock", u"⇪", {u"capslock"}},

    {Key::pageUp, 116, u"pageUp", u"⇞", {u"pageup", u"\u21DE"}, nullptr, u"Page Up"},
    {Key::pageDown, 121, u"pageDown", u"⇟", {u"pagedown"}, nullptr, u"Page Down"},
    {Key::home, 115, u"home", u"↖", {u"home", u"\u2196"}, nullptr, u"Home"},
    {Key::end, 119, u"end", u"↘", {u"end"}, nullptr, u"End"},
    {Key::upArrow, 126, u"upArrow", u"↑", {u"uparrow", u"\u2191"}, u"↑", u"↑"},
    {Key::rightArrow, 124, u"rightArrow", u"→", {u"rightarrow"}, u"→", u"→"},
    {Key::downArrow, 125, u"downArrow", u"↓", {u"downarrow"}, u"↓", u"↓"},
    {Key::leftArrow, 123, u"leftArrow", u"←", {u"leftarrow", u"\u2190"}, u"←", u"←"},

    // Only F1 to F10 and F17 have written forms; the others are reached by code alone.
    {Key::f1, 122, u"f1", u"F1", {u"f1"}, nullptr, u"F1"},
    {Key::f2, 120, u"f2", u"F2", {u"f2"}, nullptr, u"F2"},
    {Key::f3, 99, u"f3", u"F3", {u"f3"}, nullptr, u"F3"},
    {Key::f4, 118, u"f4", u"F4", {u"f4"}, nullptr, u"F4"},
    {Key::f5, 96, u"f5", u"F5", {u"f5"}, nullptr, u"F5"},
    {Key::f6, 97, u"f6", u"F6", {u"f6"}, nullptr, u"F6"},
    {Key::f7, 98, u"f7", u"F7", {u"f7"}, nullptr, u"F7"},
    {Key::f8, 100, u"f8", u"F8", {u"f8"}, nullptr, u"F8"},
    {Key::f9, 101, u"f9", u"F9", {u"f9"}, nullptr, u"F9"},
    {Key::f10, 109, u"f10", u"F10", {u"f10"}, nullptr, u"F10"},
    {Key::f11, 103, u"f11", u"F11", {}, nullptr, u"F11"},
    {Key::f12, 111, u"f12", u"F12", {}, nullptr, u"F12"},
    {Key::f13, 105, u"f13", u"F13", {}},
    {Key::f14, 107, u"f14", u"F14", {}},
    {Key::f15, 113, u"f15", u"F15", {}},
    {Key::f16, 106, u"f16", u"F16", {}},
    {Key::f17, 64, u"f17", u"F17", {u"f17"}},
    {Key::f18, 79, u"f18", u"F18", {}},
    {Key::f19, 80, u"f19", u"F19", {}},
    {Key::f20, 90, u"f20", u"F20", {}},

    {Key::keypad0, 82, u"keypad0", u"Keypad 0", {u"keypad0"}},
    {Key::keypad1, 83, u"keypad1", u"Keypad 1", {u"keypad1"}},
    {Key::keypad2, 84, u"keypad2", u"Keypad 2", {u"keypad2"}},
    {Key::keypad3, 85, u"keypad3", u"Keypad 3", {u"keypad3"}},
    {Key::keypad4, 86, u"keypad4", u"Keypad 4", {u"keypad4"}},
    {Key::keypad5, 87, u"keypad5", u"Keypad 5", {u"keypad5"}},
    {Key::keypad6, 88, u"keypad6", u"Keypad 6", {u"keypad6"}},
    {Key::keypad7, 89, u"keypad7", u"Keypad 7", {u"keypad7"}},
    {Key::keypad8, 91, u"keypad8", u"Keypad 8", {u"keypad8"}},
    {Key::keypad9, 92, u"keypad9", u"Keypad 9", {u"keypad9"}},
    {Key::keypadClear, 71, u"keypadClear", u"⌧", {u"keypadclear", u"\u2327"}},
    {Key::keypadDecimal, 65, u"keypadDecimal", u"Keypad .", {u"keypaddecimal"}},
    {Key::keypadDivide, 75, u"keypadDivide", u"Keypad /", {u"keypaddivide"}},
    {Key::keypadEnter, 76, u"keypadEnter", u"⌅", {u"keypadenter"}, nullptr, u"Return"},
    {Key::keypadEquals, 81, u"keypadEquals", u"Keypad =", {u"keypadequals"}},
    {Key::keypadMinus, 78, u"keypadMinus", u"Keypad -", {u"keypadminus"}},
    {Key::keypadMultiply, 67, u"keypadMultiply", u"Keypad *", {u"keypadmultiply"}},
    {Key::keypadPlus, 69, u"keypadPlus", u"Keypad +", {u"keypadplus"}},

    {Key::escape, 53, u"escape", u"⎋", {u"escape", u"\u238B"}, u"Esc", u"Esc"},
    {Key::delete_, 51, u"delete", u"⌫", {u"delete", u"\u232B"}, nullptr, u"Delete"},
    {Key::forwardDelete,
     117,
     u"forwardDelete",
     u"⌦",
     {u"forwarddelete", u"\u2326"},
     nullptr,
     u"Delete"},
    {Key::help, 114, u"help", u"?⃝", {u"help", u"?\u20DD"}},
    {Key::volumeUp, 72, u"volumeUp", u"🔊", {u"volumeup", u"\U0001F50A"}},
    {Key::volumeDown, 73, u"volumeDown", u"🔉", {u"volumedown", u"\U0001F509"}},
    {Key::mute, 74, u"mute", u"🔇", {u"mute", u"\U0001F507"}},
};

constexpr std::size_t kKeyCount = sizeof(kKeys) / sizeof(kKeys[0]);
static_assert(kKeyCount == 114, "the keyboard has 114 named keys");

constexpr bool rowsFollowDeclarationOrder()
{
    for (std::size_t i = 0; i < kKeyCount; ++i) {
        if (static_cast<std::size_t>(kKeys[i].key) != i)
            return false;
    }
    return true;
}
static_assert(rowsFollowDeclarationOrder(), "the key table is indexed by the enumeration");

constexpr quint32 kHighestCode = 126;

// A direct table of codes 0 to 126; -1 marks the codes that name no key.
constexpr std::array<int, kHighestCode + 1> makeCodeTable()
{
    std::array<int, kHighestCode + 1> table{};
    for (int& entry : table)
        entry = -1;
    for (std::size_t i = 0; i < kKeyCount; ++i)
        table[kKeys[i].code] = static_cast<int>(i);
    return table;
}
constexpr auto kCodeTable = makeCodeTable();

const KeyInfo& info(Key key)
{
    return kKeys[static_cast<std::size_t>(key)];
}

} // namespace

const QList<Key>& allKeys()
{
    static const QList<Key> keys = [] {
        QList<Key> list;
        list.reserve(kKeyCount);
        for (const KeyInfo& row : kKeys)
            list.append(row.key);
        return list;
    }();
    return keys;
}

quint32 carbonKeyCode(Key key)
{
    return info(key).code;
}

std::optional<Key> keyFromCarbonKeyCode(quint32 code)
{
    if (code > kHighestCode)
        return std::nullopt;
    const int index = kCodeTable[code];
    if (index < 0)
        return std::nullopt;
    return kKeys[index].key;
}

std::optional<Key> keyFromString(const QString& string)
{
    const QString lowered = string.toLower();
    for (const KeyInfo& row : kKeys) {
        for (const char16_t* form : row.forms) {
            if (form == nullptr)
                break;
            if (lowered == QStringView(form))
                return row.key;
        }
    }
    return std::nullopt;
}

QString keyDescription(Key key)
{
    return QString::fromUtf16(info(key).description);
}

QString keyName(Key key)
{
    return QString::fromUtf16(info(key).name);
}

std::optional<QString> chordKeyName(Key key)
{
    if (const char16_t* name = info(key).chordName)
        return QString::fromUtf16(name);
    return std::nullopt;
}

std::optional<QString> menuKeyName(Key key)
{
    if (const char16_t* name = info(key).menuName)
        return QString::fromUtf16(name);
    return std::nullopt;
}

} // namespace HotKey
