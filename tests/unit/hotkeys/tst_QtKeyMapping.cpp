// SPDX-License-Identifier: MIT
#include "hotkeys/QtKeyMapping.h"

#include <QTest>

using Tessaline::QtKeyMapping;

Q_DECLARE_METATYPE(std::optional<quint32>)

class TestQtKeyMapping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keys_data();
    void keys();
    void modifiers_data();
    void modifiers();
    void modifierKeys();
    void keyEvent();
};

void TestQtKeyMapping::keys_data()
{
    QTest::addColumn<int>("qtKey");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<std::optional<quint32>>("code");
    const int none = Qt::NoModifier;
    const int keypad = Qt::KeypadModifier;
    auto row = [](const char* tag, int key, int mods, quint32 scan, std::optional<quint32> code) {
        QTest::addRow("%s", tag) << key << mods << scan << code;
    };
    const char* letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const quint32 letterCodes[] = {0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46,
                                   45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6};
    for (int i = 0; i < 26; ++i) {
        const QByteArray tag = QByteArray("letter ") + letters[i];
        row(tag.constData(), Qt::Key_A + i, none, 0, letterCodes[i]);
    }
    const quint32 digitCodes[] = {29, 18, 19, 20, 21, 23, 22, 26, 28, 25};
    const quint32 keypadCodes[] = {82, 83, 84, 85, 86, 87, 88, 89, 91, 92};
    for (int i = 0; i < 10; ++i) {
        row(QByteArray("digit ").append(char('0' + i)).constData(), Qt::Key_0 + i, none, 0,
            digitCodes[i]);
        row(QByteArray("keypad ").append(char('0' + i)).constData(), Qt::Key_0 + i, keypad, 0,
            keypadCodes[i]);
    }
    const quint32 functionCodes[] = {122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                                     103, 111, 105, 107, 113, 106, 64, 79,  80,  90};
    for (int i = 0; i < 20; ++i)
        row(QByteArray("F").append(QByteArray::number(i + 1)).constData(), Qt::Key_F1 + i, none, 0,
            functionCodes[i]);

    // Symbols typed with Shift on a US layout name their unshifted key.
    row("exclam", Qt::Key_Exclam, Qt::ShiftModifier, 0, 18);
    row("at", Qt::Key_At, Qt::ShiftModifier, 0, 19);
    row("paren right", Qt::Key_ParenRight, Qt::ShiftModifier, 0, 29);
    row("brace left", Qt::Key_BraceLeft, Qt::ShiftModifier, 0, 33);
    row("question", Qt::Key_Question, Qt::ShiftModifier, 0, 44);
    row("tilde", Qt::Key_AsciiTilde, Qt::ShiftModifier, 0, 50);
    row("underscore", Qt::Key_Underscore, Qt::ShiftModifier, 0, 27);
    row("plus", Qt::Key_Plus, Qt::ShiftModifier, 0, 24);
    row("double quote", Qt::Key_QuoteDbl, Qt::ShiftModifier, 0, 39);

    row("period", Qt::Key_Period, none, 0, 47);
    row("apostrophe", Qt::Key_Apostrophe, none, 0, 39);
    row("bracket right", Qt::Key_BracketRight, none, 0, 30);
    row("semicolon", Qt::Key_Semicolon, none, 0, 41);
    row("slash", Qt::Key_Slash, none, 0, 44);
    row("backslash", Qt::Key_Backslash, none, 0, 42);
    row("comma", Qt::Key_Comma, none, 0, 43);
    row("equal", Qt::Key_Equal, none, 0, 24);
    row("grave", Qt::Key_QuoteLeft, none, 0, 50);
    row("bracket left", Qt::Key_BracketLeft, none, 0, 33);
    row("minus", Qt::Key_Minus, none, 0, 27);
    row("section", Qt::Key_section, none, 0, 10);
    row("space", Qt::Key_Space, none, 0, 49);
    row("tab", Qt::Key_Tab, none, 0, 48);
    row("backtab", Qt::Key_Backtab, Qt::ShiftModifier, 0, 48);
    row("return", Qt::Key_Return, none, 0, 36);
    row("enter", Qt::Key_Enter, keypad, 0, 76);
    row("escape", Qt::Key_Escape, none, 0, 53);
    row("backspace", Qt::Key_Backspace, none, 0, 51);
    row("delete", Qt::Key_Delete, none, 0, 117);
    row("insert", Qt::Key_Insert, none, 0, 114);
    row("home", Qt::Key_Home, none, 0, 115);
    row("end", Qt::Key_End, none, 0, 119);
    row("page up", Qt::Key_PageUp, none, 0, 116);
    row("page down", Qt::Key_PageDown, none, 0, 121);
    row("left", Qt::Key_Left, none, 0, 123);
    row("right", Qt::Key_Right, none, 0, 124);
    row("down", Qt::Key_Down, none, 0, 125);
    row("up", Qt::Key_Up, none, 0, 126);
    row("volume up", Qt::Key_VolumeUp, none, 0, 72);
    row("volume down", Qt::Key_VolumeDown, none, 0, 73);
    row("mute", Qt::Key_VolumeMute, none, 0, 74);
    row("keypad period", Qt::Key_Period, keypad, 0, 65);
    row("keypad slash", Qt::Key_Slash, keypad, 0, 75);
    row("keypad asterisk", Qt::Key_Asterisk, keypad, 0, 67);
    row("keypad minus", Qt::Key_Minus, keypad, 0, 78);
    row("keypad plus", Qt::Key_Plus, keypad, 0, 69);
    row("keypad equal", Qt::Key_Equal, keypad, 0, 81);
    row("keypad clear", Qt::Key_Clear, keypad, 0, 71);
    // A keypad key Qt does not know as such keeps its main code.
    row("keypad home", Qt::Key_Home, keypad, 0, 115);

    // Unknown Qt keys fall back to the key's position.
    row("cyrillic ka by position", Qt::Key_unknown, none, 45, 40);
    row("unknown by position q", 0x6cb, none, 24, 12);
    row("unknown position", Qt::Key_unknown, none, 200, std::nullopt);
    row("no key at all", Qt::Key_Launch0, none, 0, std::nullopt);
    // A known Qt key wins over its scan code.
    row("qt key wins", Qt::Key_K, none, 24, 40);
}

void TestQtKeyMapping::keys()
{
    QFETCH(int, qtKey);
    QFETCH(int, modifiers);
    QFETCH(quint32, scanCode);
    QFETCH(std::optional<quint32>, code);
    QCOMPARE(
        QtKeyMapping::carbonKeyCode(qtKey, Qt::KeyboardModifiers::fromInt(modifiers), scanCode),
        code);
}

void TestQtKeyMapping::modifiers_data()
{
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<quint64>("flags");
    QTest::addRow("none") << int(Qt::NoModifier) << quint64(0);
    QTest::addRow("shift") << int(Qt::ShiftModifier) << quint64(0x20000);
    QTest::addRow("control") << int(Qt::ControlModifier) << quint64(0x40000);
    QTest::addRow("alt is option") << int(Qt::AltModifier) << quint64(0x80000);
    QTest::addRow("super is command") << int(Qt::MetaModifier) << quint64(0x100000);
    QTest::addRow("keypad ignored")
        << int(Qt::KeypadModifier | Qt::GroupSwitchModifier) << quint64(0);
    QTest::addRow("all") << int(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier |
                                Qt::MetaModifier)
                         << quint64(0x1E0000);
}

void TestQtKeyMapping::modifiers()
{
    QFETCH(int, modifiers);
    QFETCH(quint64, flags);
    QCOMPARE(QtKeyMapping::modifierFlags(Qt::KeyboardModifiers::fromInt(modifiers)), flags);
}

void TestQtKeyMapping::modifierKeys()
{
    for (int key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_Meta, Qt::Key_Super_L,
                    Qt::Key_Super_R, Qt::Key_CapsLock, Qt::Key_AltGr})
        QVERIFY(QtKeyMapping::isModifierKey(key));
    for (int key : {Qt::Key_K, Qt::Key_Escape, Qt::Key_F5, Qt::Key_Space})
        QVERIFY(!QtKeyMapping::isModifierKey(key));
}

void TestQtKeyMapping::keyEvent()
{
    const auto event =
        QtKeyMapping::keyEvent(Qt::Key_K, Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    QVERIFY(event.has_value());
    QCOMPARE(event->keyCode, 40u);
    QCOMPARE(event->modifierFlags, quint64(0x1C0000));
    QVERIFY(!QtKeyMapping::keyEvent(Qt::Key_Launch0, Qt::ControlModifier).has_value());
}

QTEST_GUILESS_MAIN(TestQtKeyMapping)
#include "tst_QtKeyMapping.moc"
