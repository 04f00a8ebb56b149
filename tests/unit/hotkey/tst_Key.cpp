// SPDX-License-Identifier: MIT
#include <hotkey/Key.h>

#include <QSet>
#include <QTest>

using HotKey::Key;

Q_DECLARE_METATYPE(Key)
Q_DECLARE_METATYPE(std::optional<Key>)

class TestKey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAllKeysWithDistinctCodes();
    void codes_data();
    void codes();
    void unusedCodesNameNoKey_data();
    void unusedCodesNameNoKey();
    void codesAboveTheTableNameNoKey();
    void everyKeyRoundTripsThroughItsCode();
    void fromString_data();
    void fromString();
    void descriptionsAreNotEmpty();
    void chordAndMenuNamesCoverTheirKeysOnly();
};

void TestKey::hasAllKeysWithDistinctCodes()
{
    QCOMPARE(HotKey::allKeys().size(), 114);
    QSet<quint32> codes;
    for (Key key : HotKey::allKeys())
        codes.insert(HotKey::carbonKeyCode(key));
    QCOMPARE(codes.size(), 114);
}

void TestKey::codes_data()
{
    QTest::addColumn<Key>("key");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QString>("name");
    struct Row
    {
        Key key;
        quint32 code;
        const char* name;
    };
    const Row rows[] = {
        {Key::a, 0, "a"},
        {Key::b, 11, "b"},
        {Key::c, 8, "c"},
        {Key::d, 2, "d"},
        {Key::e, 14, "e"},
        {Key::f, 3, "f"},
        {Key::g, 5, "g"},
        {Key::h, 4, "h"},
        {Key::i, 34, "i"},
        {Key::j, 38, "j"},
        {Key::k, 40, "k"},
        {Key::l, 37, "l"},
        {Key::m, 46, "m"},
        {Key::n, 45, "n"},
        {Key::o, 31, "o"},
        {Key::p, 35, "p"},
        {Key::q, 12, "q"},
        {Key::r, 15, "r"},
        {Key::s, 1, "s"},
        {Key::t, 17, "t"},
        {Key::u, 32, "u"},
        {Key::v, 9, "v"},
        {Key::w, 13, "w"},
        {Key::x, 7, "x"},
        {Key::y, 16, "y"},
        {Key::z, 6, "z"},
        {Key::zero, 29, "zero"},
        {Key::one, 18, "one"},
        {Key::two, 19, "two"},
        {Key::three, 20, "three"},
        {Key::four, 21, "four"},
        {Key::five, 23, "five"},
        {Key::six, 22, "six"},
        {Key::seven, 26, "seven"},
        {Key::eight, 28, "eight"},
        {Key::nine, 25, "nine"},
        {Key::period, 47, "period"},
        {Key::quote, 39, "quote"},
        {Key::rightBracket, 30, "rightBracket"},
        {Key::semicolon, 41, "semicolon"},
        {Key::slash, 44, "slash"},
        {Key::backslash, 42, "backslash"},
        {Key::comma, 43, "comma"},
        {Key::equal, 24, "equal"},
        {Key::grave, 50, "grave"},
        {Key::leftBracket, 33, "leftBracket"},
        {Key::minus, 27, "minus"},
        {Key::section, 10, "section"},
        {Key::space, 49, "space"},
        {Key::tab, 48, "tab"},
        {Key::return_, 36, "return"},
        {Key::command, 55, "command"},
        {Key::rightCommand, 54, "rightCommand"},
        {Key::option, 58, "option"},
        {Key::rightOption, 61, "rightOption"},
        {Key::control, 59, "control"},
        {Key::rightControl, 62, "rightControl"},
        {Key::shift, 56, "shift"},
        {Key::rightShift, 60, "rightShift"},
        {Key::function, 63, "function"},
        {Key::capsLock, 57, "capsLock"},
        {Key::pageUp, 116, "pageUp"},
        {Key::pageDown, 121, "pageDown"},
        {Key::home, 115, "home"},
        {Key::end, 119, "end"},
        {Key::upArrow, 126, "upArrow"},
        {Key::rightArrow, 124, "rightArrow"},
        {Key::downArrow, 125, "downArrow"},
        {Key::leftArrow, 123, "leftArrow"},
        {Key::f1, 122, "f1"},
        {Key::f2, 120, "f2"},
        {Key::f3, 99, "f3"},
        {Key::f4, 118, "f4"},
        {Key::f5, 96, "f5"},
        {Key::f6, 97, "f6"},
        {Key::f7, 98, "f7"},
        {Key::f8, 100, "f8"},
        {Key::f9, 101, "f9"},
        {Key::f10, 109, "f10"},
        {Key::f11, 103, "f11"},
        {Key::f12, 111, "f12"},
        {Key::f13, 105, "f13"},
        {Key::f14, 107, "f14"},
        {Key::f15, 113, "f15"},
        {Key::f16, 106, "f16"},
        {Key::f17, 64, "f17"},
        {Key::f18, 79, "f18"},
        {Key::f19, 80, "f19"},
        {Key::f20, 90, "f20"},
        {Key::keypad0, 82, "keypad0"},
        {Key::keypad1, 83, "keypad1"},
        {Key::keypad2, 84, "keypad2"},
        {Key::keypad3, 85, "keypad3"},
        {Key::keypad4, 86, "keypad4"},
        {Key::keypad5, 87, "keypad5"},
        {Key::keypad6, 88, "keypad6"},
        {Key::keypad7, 89, "keypad7"},
        {Key::keypad8, 91, "keypad8"},
        {Key::keypad9, 92, "keypad9"},
        {Key::keypadClear, 71, "keypadClear"},
        {Key::keypadDecimal, 65, "keypadDecimal"},
        {Key::keypadDivide, 75, "keypadDivide"},
        {Key::keypadEnter, 76, "keypadEnter"},
        {Key::keypadEquals, 81, "keypadEquals"},
        {Key::keypadMinus, 78, "keypadMinus"},
        {Key::keypadMultiply, 67, "keypadMultiply"},
        {Key::keypadPlus, 69, "keypadPlus"},
        {Key::escape, 53, "escape"},
        {Key::delete_, 51, "delete"},
        {Key::forwardDelete, 117, "forwardDelete"},
        {Key::help, 114, "help"},
        {Key::volumeUp, 72, "volumeUp"},
        {Key::volumeDown, 73, "volumeDown"},
        {Key::mute, 74, "mute"},
    };
    QCOMPARE(std::size(rows), std::size_t(114));
    int index = 0;
    for (const Row& row : rows) {
        // The rows above follow the declaration order.
        QCOMPARE(HotKey::allKeys().at(index++), row.key);
        QTest::addRow("%s", row.name) << row.key << row.code << QString::fromLatin1(row.name);
    }
}

void TestKey::codes()
{
    QFETCH(Key, key);
    QFETCH(quint32, code);
    QFETCH(QString, name);
    QCOMPARE(HotKey::carbonKeyCode(key), code);
    QCOMPARE(HotKey::keyName(key), name);
    QCOMPARE(HotKey::keyFromCarbonKeyCode(code), std::optional<Key>(key));
}

void TestKey::unusedCodesNameNoKey_data()
{
    QTest::addColumn<quint32>("code");
    for (quint32 code : {52, 66, 68, 70, 77, 93, 94, 95, 102, 104, 108, 110, 112})
        QTest::addRow("%u", code) << code;
}

void TestKey::unusedCodesNameNoKey()
{
    QFETCH(quint32, code);
    QVERIFY(!HotKey::keyFromCarbonKeyCode(code).has_value());
}

void TestKey::codesAboveTheTableNameNoKey()
{
    QVERIFY(HotKey::keyFromCarbonKeyCode(126).has_value());
    QVERIFY(!HotKey::keyFromCarbonKeyCode(127).has_value());
    QVERIFY(!HotKey::keyFromCarbonKeyCode(200).has_value());
    QVERIFY(!HotKey::keyFromCarbonKeyCode(0xFFFFFFFFu).has_value());
}

void TestKey::everyKeyRoundTripsThroughItsCode()
{
    int named = 0;
    for (quint32 code = 0; code <= 126; ++code) {
        if (const auto key = HotKey::keyFromCarbonKeyCode(code)) {
            QCOMPARE(HotKey::carbonKeyCode(*key), code);
            ++named;
        }
    }
    QCOMPARE(named, 114);
}

void TestKey::fromString_data()
{
    QTest::addColumn<QString>("string");
    QTest::addColumn<std::optional<Key>>("expected");
    const std::optional<Key> none;
    auto row = [](const char* tag, const QString& string, std::optional<Key> key) {
        QTest::addRow("%s", tag) << string << key;
    };
    auto s = [](const char16_t* text) { return QString::fromUtf16(text); };

    row("K upper", s(u"K"), Key::k);
    row("k lower", s(u"k"), Key::k);
    row("a", s(u"a"), Key::a);
    row("z", s(u"Z"), Key::z);
    row("digit 0", s(u"0"), Key::zero);
    row("word zero", s(u"zero"), Key::zero);
    row("word Nine", s(u"Nine"), Key::nine);
    row("digit 5", s(u"5"), Key::five);
    row("=", s(u"="), Key::equal);
    row("equal", s(u"equal"), Key::equal);
    row("-", s(u"-"), Key::minus);
    row("minus", s(u"minus"), Key::minus);
    row("double quote", s(u"\""), Key::quote);
    row("quote", s(u"quote"), Key::quote);
    row("apostrophe", s(u"'"), none);
    row(";", s(u";"), Key::semicolon);
    row("semicolon", s(u"semicolon"), Key::semicolon);
    row("backslash char", s(u"\\"), Key::backslash);
    row("backslash", s(u"backslash"), Key::backslash);
    row(",", s(u","), Key::comma);
    row("comma", s(u"comma"), Key::comma);
    row("/", s(u"/"), Key::slash);
    row("slash", s(u"slash"), Key::slash);
    row(".", s(u"."), Key::period);
    row("period", s(u"period"), Key::period);
    row("backtick", s(u"`"), Key::grave);
    row("modifier grave", s(u"\u02CB"), Key::grave);
    row("fullwidth grave", s(u"\uFF40"), Key::grave);
    row("grave", s(u"grave"), Key::grave);
    row("section sign", s(u"§"), Key::section);
    row("section", s(u"section"), Key::section);
    row("]", s(u"]"), Key::rightBracket);
    row("rightBracket word", s(u"rightBracket"), none);
    row("[", s(u"["), Key::leftBracket);
    row("leftbracket word", s(u"leftbracket"), none);
    row("return", s(u"Return"), Key::return_);
    row("carriage return", s(u"\r"), Key::return_);
    row("return arrow", s(u"\u21A9\uFE0E"), Key::return_);
    row("return symbol", s(u"\u23CE"), Key::return_);
    row("return arrow 2", s(u"\u2B90"), Key::return_);
    row("newline", s(u"\n"), none);
    row("tab", s(u"tab"), Key::tab);
    row("tab char", s(u"\t"), Key::tab);
    row("tab arrow", s(u"⇥"), Key::tab);
    row("space", s(u"space"), Key::space);
    row("space char", s(u" "), Key::space);
    row("space symbol", s(u"␣"), Key::space);
    row("delete", s(u"delete"), Key::delete_);
    row("delete symbol", s(u"⌫"), Key::delete_);
    row("forwarddelete", s(u"ForwardDelete"), Key::forwardDelete);
    row("forward delete symbol", s(u"⌦"), Key::forwardDelete);
    row("escape", s(u"escape"), Key::escape);
    row("escape symbol", s(u"⎋"), Key::escape);
    row("command", s(u"command"), Key::command);
    row("command symbol", s(u"⌘"), Key::command);
    row("apple logo", s(u"\uF8FF"), Key::command);
    row("shift", s(u"shift"), Key::shift);
    row("shift symbol", s(u"⇧"), Key::shift);
    row("control", s(u"control"), Key::control);
    row("control symbol", s(u"⌃"), Key::control);
    row("option", s(u"option"), Key::option);
    row("option symbol", s(u"⌥"), none);
    row("capslock", s(u"CapsLock"), Key::capsLock);
    row("rightcommand", s(u"rightcommand"), Key::rightCommand);
    row("rightshift", s(u"rightshift"), Key::rightShift);
    row("rightoption", s(u"rightoption"), Key::rightOption);
    row("rightcontrol", s(u"rightcontrol"), Key::rightControl);
    row("function", s(u"function"), Key::function);
    row("fn", s(u"fn"), Key::function);
    row("keypad0", s(u"keypad0"), Key::keypad0);
    row("keypad9", s(u"Keypad9"), Key::keypad9);
    row("keypadclear", s(u"keypadclear"), Key::keypadClear);
    row("clear symbol", s(u"⌧"), Key::keypadClear);
    row("keypaddecimal", s(u"keypaddecimal"), Key::keypadDecimal);
    row("keypaddivide", s(u"keypaddivide"), Key::keypadDivide);
    row("keypadenter", s(u"keypadenter"), Key::keypadEnter);
    row("keypadequals", s(u"keypadequals"), Key::keypadEquals);
    row("keypadminus", s(u"keypadminus"), Key::keypadMinus);
    row("keypadmultiply", s(u"keypadmultiply"), Key::keypadMultiply);
    row("keypadplus", s(u"keypadplus"), Key::keypadPlus);
    row("home", s(u"home"), Key::home);
    row("home symbol", s(u"↖"), Key::home);
    row("end", s(u"end"), Key::end);
    row("pageup", s(u"PageUp"), Key::pageUp);
    row("pageup symbol", s(u"⇞"), Key::pageUp);
    row("pagedown", s(u"pagedown"), Key::pageDown);
    row("pagedown symbol", s(u"⇟"), none);
    row("leftarrow", s(u"leftarrow"), Key::leftArrow);
    row("left symbol", s(u"←"), Key::leftArrow);
    row("rightarrow", s(u"rightarrow"), Key::rightArrow);
    row("right symbol", s(u"→"), none);
    row("uparrow", s(u"uparrow"), Key::upArrow);
    row("up symbol", s(u"↑"), Key::upArrow);
    row("downarrow", s(u"downarrow"), Key::downArrow);
    row("down symbol", s(u"↓"), none);
    row("help", s(u"help"), Key::help);
    row("help symbol", s(u"?\u20DD"), Key::help);
    row("question mark", s(u"?"), none);
    row("volumeup", s(u"volumeup"), Key::volumeUp);
    row("volume up symbol", s(u"🔊"), Key::volumeUp);
    row("volumedown", s(u"volumedown"), Key::volumeDown);
    row("volume down symbol", s(u"🔉"), Key::volumeDown);
    row("mute", s(u"mute"), Key::mute);
    row("mute symbol", s(u"🔇"), Key::mute);
    row("f1", s(u"F1"), Key::f1);
    row("f2", s(u"f2"), Key::f2);
    row("f3", s(u"f3"), Key::f3);
    row("f4", s(u"f4"), Key::f4);
    row("f5", s(u"f5"), Key::f5);
    row("f6", s(u"f6"), Key::f6);
    row("f7", s(u"f7"), Key::f7);
    row("f8", s(u"f8"), Key::f8);
    row("f9", s(u"f9"), Key::f9);
    row("f10", s(u"f10"), Key::f10);
    row("f17", s(u"f17"), Key::f17);
    for (const char* name : {"f11", "f12", "f13", "f14", "f15", "f16", "f18", "f19", "f20"})
        row(name, QString::fromLatin1(name), none);
    row("empty", QString(), none);
    row("two letters", s(u"ab"), none);
    row("padded letter", s(u" k"), none);
}

void TestKey::fromString()
{
    QFETCH(QString, string);
    QFETCH(std::optional<Key>, expected);
    QCOMPARE(HotKey::keyFromString(string), expected);
}

void TestKey::descriptionsAreNotEmpty()
{
    for (Key key : HotKey::allKeys())
        QVERIFY2(!HotKey::keyDescription(key).isEmpty(), qPrintable(HotKey::keyName(key)));
    QCOMPARE(HotKey::keyDescription(Key::k), QStringLiteral("K"));
    QCOMPARE(HotKey::keyDescription(Key::f5), QStringLiteral("F5"));
}

void TestKey::chordAndMenuNamesCoverTheirKeysOnly()
{
    QStringList chordNamed;
    QStringList menuNamed;
    for (Key key : HotKey::allKeys()) {
        if (const std::optional<QString> name = HotKey::chordKeyName(key)) {
            QVERIFY2(!name->isEmpty(), qPrintable(HotKey::keyName(key)));
            chordNamed.append(HotKey::keyName(key));
        }
        if (const std::optional<QString> name = HotKey::menuKeyName(key)) {
            QVERIFY2(!name->isEmpty(), qPrintable(HotKey::keyName(key)));
            menuNamed.append(HotKey::keyName(key));
        }
    }
    // Letters, digits, Return, Tab, Space, Escape and the four arrows.
    QCOMPARE(chordNamed.size(), 26 + 10 + 4 + 4);
    // Return and keypad Enter, Tab, Space, Delete and forward Delete, Escape, F1 to F12,
    // Home, End, Page Up, Page Down and the four arrows.
    QCOMPARE(menuNamed.size(), 7 + 12 + 4 + 4);

    QCOMPARE(HotKey::chordKeyName(Key::q), std::optional<QString>(QStringLiteral("Q")));
    QCOMPARE(HotKey::chordKeyName(Key::seven), std::optional<QString>(QStringLiteral("7")));
    QCOMPARE(HotKey::chordKeyName(Key::escape), std::optional<QString>(QStringLiteral("Esc")));
    QCOMPARE(HotKey::chordKeyName(Key::f5), std::nullopt);
    QCOMPARE(HotKey::menuKeyName(Key::keypadEnter),
             std::optional<QString>(QStringLiteral("Return")));
    QCOMPARE(HotKey::menuKeyName(Key::forwardDelete),
             std::optional<QString>(QStringLiteral("Delete")));
    QCOMPARE(HotKey::menuKeyName(Key::pageDown),
             std::optional<QString>(QStringLiteral("Page Down")));
    QCOMPARE(HotKey::menuKeyName(Key::q), std::nullopt);
}

QTEST_GUILESS_MAIN(TestKey)
#include "tst_Key.moc"
