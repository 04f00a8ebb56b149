// SPDX-License-Identifier: MIT
#include "platform/x11/XcbHotKeyKeysyms.h"

#include <hotkey/Key.h>
#include <hotkey/ModifierFlags.h>
#include <hotkey/ShortcutTrigger.h>

#include <QTest>

#include <xkbcommon/xkbcommon.h>

using HotKey::Key;
using HotKey::KeyCombo;
using HotKey::ShortcutTrigger;
using HotKey::CarbonModifier::command;
using HotKey::CarbonModifier::control;
using HotKey::CarbonModifier::option;
using HotKey::CarbonModifier::shift;

class TestShortcutTrigger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fromCombo_data();
    void fromCombo();
    void keysWithoutASymbolGiveNoTrigger();
    void everyKeyNameIsTheSymbolTheKeyTypes();
};

void TestShortcutTrigger::fromCombo_data()
{
    QTest::addColumn<quint32>("keyCode");
    QTest::addColumn<quint32>("modifiers");
    QTest::addColumn<QString>("trigger");

    QTest::addRow("default ⌃⌥⌘K") << 40u << (control | option | command)
                                  << QStringLiteral("CTRL+ALT+LOGO+k");
    QTest::addRow("⌃⇧S") << 1u << (control | shift) << QStringLiteral("CTRL+SHIFT+s");
    // The order is fixed, whatever bits are set.
    QTest::addRow("all four") << 38u << (shift | command | option | control)
                              << QStringLiteral("CTRL+ALT+SHIFT+LOGO+j");
    QTest::addRow("no modifier") << 122u << 0u << QStringLiteral("F1");
    QTest::addRow("digit") << 29u << option << QStringLiteral("ALT+0");
    QTest::addRow("space") << 49u << control << QStringLiteral("CTRL+space");
    QTest::addRow("right bracket") << 30u << command << QStringLiteral("LOGO+bracketright");
    QTest::addRow("quote") << 39u << control << QStringLiteral("CTRL+apostrophe");
    QTest::addRow("return") << 36u << option << QStringLiteral("ALT+Return");
    QTest::addRow("page up") << 116u << control << QStringLiteral("CTRL+Prior");
    QTest::addRow("left arrow") << 123u << command << QStringLiteral("LOGO+Left");
    QTest::addRow("f20") << 90u << shift << QStringLiteral("SHIFT+F20");
    QTest::addRow("keypad 7") << 89u << control << QStringLiteral("CTRL+KP_7");
    QTest::addRow("keypad plus") << 69u << control << QStringLiteral("CTRL+KP_Add");
    QTest::addRow("delete") << 51u << control << QStringLiteral("CTRL+BackSpace");
    QTest::addRow("forward delete") << 117u << control << QStringLiteral("CTRL+Delete");
    QTest::addRow("mute") << 74u << 0u << QStringLiteral("XF86AudioMute");
    // Bits that are not one of the four modifiers are left out.
    QTest::addRow("other bits") << 40u << (control | 0x80u) << QStringLiteral("CTRL+k");
}

void TestShortcutTrigger::fromCombo()
{
    QFETCH(quint32, keyCode);
    QFETCH(quint32, modifiers);
    QFETCH(QString, trigger);
    QCOMPARE(ShortcutTrigger::fromCombo(KeyCombo(keyCode, modifiers)), trigger);
}

void TestShortcutTrigger::keysWithoutASymbolGiveNoTrigger()
{
    // Fn types nothing; 52 and 200 name no key.
    QCOMPARE(ShortcutTrigger::fromCombo(KeyCombo(63, control)), std::nullopt);
    QCOMPARE(ShortcutTrigger::fromCombo(KeyCombo(52, control)), std::nullopt);
    QCOMPARE(ShortcutTrigger::fromCombo(KeyCombo(200, control)), std::nullopt);
}

// The names are xkbcommon's: each must name the symbol the X11 grab uses for the same key.
void TestShortcutTrigger::everyKeyNameIsTheSymbolTheKeyTypes()
{
    for (const Key key : HotKey::allKeys()) {
        const std::optional<QString> name = ShortcutTrigger::keyName(key);
        const std::optional<quint32> keysym =
            Tessaline::XcbHotKeyKeysyms::keysym(HotKey::carbonKeyCode(key));
        if (key == Key::function) {
            QVERIFY(!name);
            continue;
        }
        QVERIFY2(name && keysym, qPrintable(HotKey::keyName(key)));
        for (const QChar c : *name)
            QVERIFY2(c.isLetterOrNumber() || c == QLatin1Char('_'), qPrintable(*name));
        QCOMPARE(xkb_keysym_from_name(name->toLatin1().constData(), XKB_KEYSYM_NO_FLAGS), *keysym);
    }
}

QTEST_GUILESS_MAIN(TestShortcutTrigger)
#include "tst_ShortcutTrigger.moc"
