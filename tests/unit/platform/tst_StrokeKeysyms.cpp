// SPDX-License-Identifier: MIT
#include "platform/xkb/StrokeKeysyms.h"

#include <QTest>

using Tessaline::KeyStroke;
using Tessaline::StrokeKeysyms;

class TestStrokeKeysyms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysymOfAKey_data();
    void keysymOfAKey();
    void modifiersArePressedInAFixedOrder_data();
    void modifiersArePressedInAFixedOrder();
};

void TestStrokeKeysyms::keysymOfAKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<quint32>("keysym");

    // Characters: letters in lower case, since Shift is a modifier of the chord of its own.
    QTest::addRow("lower letter") << QStringLiteral("v") << quint32(0x0076);
    QTest::addRow("upper letter") << QStringLiteral("N") << quint32(0x006e);
    QTest::addRow("digit") << QStringLiteral("3") << quint32(0x0033);
    QTest::addRow("plus") << QStringLiteral("+") << quint32(0x002b);
    QTest::addRow("comma") << QStringLiteral(",") << quint32(0x002c);
    QTest::addRow("space") << QStringLiteral(" ") << quint32(0x0020);
    QTest::addRow("Latin-1 letter") << QStringLiteral("É") << quint32(0x00e9);
    QTest::addRow("Unicode keysym") << QStringLiteral("☐") << quint32(0x1002610);
    // Keysym names, exact and then regardless of case.
    QTest::addRow("Return") << QStringLiteral("Return") << quint32(0xff0d);
    QTest::addRow("Page_Up") << QStringLiteral("Page_Up") << quint32(0xff55);
    QTest::addRow("page_up") << QStringLiteral("page_up") << quint32(0xff55);
    QTest::addRow("F5") << QStringLiteral("F5") << quint32(0xffc2);
    QTest::addRow("Delete") << QStringLiteral("Delete") << quint32(0xffff);
    QTest::addRow("BackSpace") << QStringLiteral("BackSpace") << quint32(0xff08);
    QTest::addRow("Left") << QStringLiteral("Left") << quint32(0xff51);
    QTest::addRow("media key") << QStringLiteral("XF86AudioPlay") << quint32(0x1008ff14);
    // Nothing to type.
    QTest::addRow("empty") << QString() << StrokeKeysyms::noSymbol;
    QTest::addRow("unknown name") << QStringLiteral("NoSuchKey") << StrokeKeysyms::noSymbol;
    QTest::addRow("two characters") << QStringLiteral("ab") << StrokeKeysyms::noSymbol;
}

void TestStrokeKeysyms::keysymOfAKey()
{
    QFETCH(QString, key);
    QFETCH(quint32, keysym);
    QCOMPARE(StrokeKeysyms::keysymOf(key), keysym);
}

void TestStrokeKeysyms::modifiersArePressedInAFixedOrder_data()
{
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QList<quint32>>("keysyms");

    constexpr quint32 control = 0xffe3, alt = 0xffe9, shift = 0xffe1, super = 0xffeb;
    QTest::addRow("none") << 0 << QList<quint32>{};
    QTest::addRow("control") << int(KeyStroke::Control) << QList<quint32>{control};
    QTest::addRow("shift control")
        << int(KeyStroke::Shift | KeyStroke::Control) << QList<quint32>{control, shift};
    QTest::addRow("all") << int(KeyStroke::Super | KeyStroke::Shift | KeyStroke::Alt |
                                KeyStroke::Control)
                         << QList<quint32>{control, alt, shift, super};
    QTest::addRow("super alt") << int(KeyStroke::Super | KeyStroke::Alt)
                               << QList<quint32>{alt, super};
}

void TestStrokeKeysyms::modifiersArePressedInAFixedOrder()
{
    QFETCH(int, modifiers);
    QFETCH(QList<quint32>, keysyms);
    QCOMPARE(StrokeKeysyms::modifierKeysyms(modifiers), keysyms);
}

QTEST_APPLESS_MAIN(TestStrokeKeysyms)
#include "tst_StrokeKeysyms.moc"
