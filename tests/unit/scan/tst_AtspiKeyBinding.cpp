// SPDX-License-Identifier: MIT
// Key bindings as GTK and Qt report them, turned into menu keyboard equivalents and chords.
#include "platform/atspi/AtspiKeyBinding.h"
#include "scan/MenuReader.h"

#include <QTest>

using namespace Tessaline;

class TestAtspiKeyBinding : public QObject
{
    Q_OBJECT

    // The chord the scanner would show for the binding, or "-" for none.
    static QString chordOf(const QString& binding, const QString& title)
    {
        const auto key = AtspiKeyBinding::parse(binding, title);
        if (!key)
            return QStringLiteral("-");
        QString symbol;
        if (key->character && !key->character->isEmpty())
            symbol = MenuReader::normalizedKey(*key->character);
        else if (key->virtualKey)
            symbol = MenuReader::virtualKeySymbol(*key->virtualKey).value_or(QStringLiteral("?"));
        else
            return QStringLiteral("?");
        return MenuReader::displayChord(symbol, key->modifiers);
    }

private Q_SLOTS:
    void chords_data()
    {
        QTest::addColumn<QString>("binding");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("chord");
        // GTK: mnemonic;path;accelerator, only the accelerator counts.
        QTest::addRow("gtk control") << QStringLiteral("s;<Alt>f:s;<Primary>s")
                                     << QStringLiteral("Save") << QStringLiteral("⌃ S");
        QTest::addRow("gtk control shift")
            << QStringLiteral("w;<Alt>f:w;<Primary><Shift>n") << QStringLiteral("New Window")
            << QStringLiteral("⌃ ⇧ N");
        QTest::addRow("gtk alt up") << QStringLiteral("u;<Alt>e:m:u;<Alt>Up")
                                    << QStringLiteral("Line Up") << QStringLiteral("⌥ ↑");
        QTest::addRow("gtk alt left") << QStringLiteral("l;<Alt>e:m:l;<Alt>Left")
                                      << QStringLiteral("Word Left") << QStringLiteral("⌥ ←");
        QTest::addRow("gtk bare F11") << QStringLiteral("f;<Alt>v:f;F11")
                                      << QStringLiteral("Fullscreen") << QStringLiteral("F11");
        QTest::addRow("gtk delete")
            << QStringLiteral("d;<Alt>e:d;Delete") << QStringLiteral("Delete Selection")
            << QStringLiteral("Delete");
        QTest::addRow("gtk backspace") << QStringLiteral(";;<Control>BackSpace")
                                       << QStringLiteral("Erase") << QStringLiteral("⌃ Delete");
        QTest::addRow("gtk page down")
            << QStringLiteral(";;<Primary>Page_Down") << QStringLiteral("Next Tab")
            << QStringLiteral("⌃ Page Down");
        QTest::addRow("gtk return") << QStringLiteral(";;<Shift>Return") << QStringLiteral("Run")
                                    << QStringLiteral("⇧ Return");
        QTest::addRow("gtk escape")
            << QStringLiteral(";;Escape") << QStringLiteral("Stop") << QStringLiteral("Esc");
        QTest::addRow("gtk tab") << QStringLiteral(";;<Primary>Tab") << QStringLiteral("Cycle")
                                 << QStringLiteral("⌃ Tab");
        QTest::addRow("gtk home") << QStringLiteral(";;<Alt>Home") << QStringLiteral("Home")
                                  << QStringLiteral("⌥ Home");
        QTest::addRow("gtk keysym plus") << QStringLiteral(";;<Primary>plus")
                                         << QStringLiteral("Zoom In") << QStringLiteral("⌃ +");
        QTest::addRow("gtk keysym space")
            << QStringLiteral(";;<Primary>space") << QStringLiteral("Complete")
            << QStringLiteral("⌃ Space");
        QTest::addRow("gtk super")
            << QStringLiteral(";;<Super>e") << QStringLiteral("Files") << QStringLiteral("⌘ E");
        QTest::addRow("gtk F13 stays a name")
            << QStringLiteral(";;F13") << QStringLiteral("Extra") << QStringLiteral("F13");
        QTest::addRow("gtk mnemonic only")
            << QStringLiteral("l;<Alt>f:l;") << QStringLiteral("Save All") << QStringLiteral("-");
        QTest::addRow("gtk top menu")
            << QStringLiteral("<Alt>f;<Alt>f;") << QStringLiteral("File") << QStringLiteral("-");
        QTest::addRow("empty") << QString() << QStringLiteral("Item") << QStringLiteral("-");
        // Qt: key-sequence text.
        QTest::addRow("qt control")
            << QStringLiteral("Ctrl+S") << QStringLiteral("&Save") << QStringLiteral("⌃ S");
        QTest::addRow("qt control shift")
            << QStringLiteral("Ctrl+Shift+N") << QStringLiteral("New Window")
            << QStringLiteral("⌃ ⇧ N");
        QTest::addRow("qt alt up")
            << QStringLiteral("Alt+Up") << QStringLiteral("Line Up") << QStringLiteral("⌥ ↑");
        QTest::addRow("qt del") << QStringLiteral("Del") << QStringLiteral("Delete")
                                << QStringLiteral("Delete");
        QTest::addRow("qt F11") << QStringLiteral("F11") << QStringLiteral("Full Screen")
                                << QStringLiteral("F11");
        QTest::addRow("qt meta shift F5") << QStringLiteral("Meta+Shift+F5")
                                          << QStringLiteral("Reload") << QStringLiteral("⇧ ⌘ F5");
        QTest::addRow("qt control plus")
            << QStringLiteral("Ctrl++") << QStringLiteral("Zoom In") << QStringLiteral("⌃ +");
        QTest::addRow("qt page up") << QStringLiteral("Ctrl+PgUp") << QStringLiteral("Previous")
                                    << QStringLiteral("⌃ Page Up");
        QTest::addRow("qt backspace")
            << QStringLiteral("Backspace") << QStringLiteral("Back") << QStringLiteral("Delete");
        QTest::addRow("qt esc") << QStringLiteral("Esc") << QStringLiteral("Cancel")
                                << QStringLiteral("Esc");
        QTest::addRow("qt mnemonic is no shortcut")
            << QStringLiteral("Alt+A") << QStringLiteral("About") << QStringLiteral("-");
        QTest::addRow("qt mnemonic any case")
            << QStringLiteral("Alt+F") << QStringLiteral("&file") << QStringLiteral("-");
        QTest::addRow("qt alt letter not in title")
            << QStringLiteral("Alt+X") << QStringLiteral("Close") << QStringLiteral("⌥ X");
        QTest::addRow("qt two chords stay whole")
            << QStringLiteral("Ctrl+K, Ctrl+C") << QStringLiteral("Comment")
            << QStringLiteral("⌃ K, ⌃ C");
        QTest::addRow("qt two chords with meta")
            << QStringLiteral("Meta+X, Up") << QStringLiteral("Jump") << QStringLiteral("⌘ X, ↑");
        // Qt's key-sequence text may name ";" as the key; it is not GTK's field separator.
        QTest::addRow("qt control semicolon")
            << QStringLiteral("Ctrl+;") << QStringLiteral("Toggle Comment")
            << QStringLiteral("⌃ ;");
        QTest::addRow("qt control shift semicolon")
            << QStringLiteral("Ctrl+Shift+;") << QStringLiteral("Jump") << QStringLiteral("⌃ ⇧ ;");
        QTest::addRow("qt bare semicolon")
            << QStringLiteral(";") << QStringLiteral("Next") << QStringLiteral(";");
        QTest::addRow("qt semicolon in a sequence")
            << QStringLiteral("Ctrl+K, Ctrl+;") << QStringLiteral("Fold")
            << QStringLiteral("⌃ K, ⌃ ;");
        QTest::addRow("qt two semicolon chords")
            << QStringLiteral("Ctrl+;, Ctrl+;") << QStringLiteral("Twice")
            << QStringLiteral("⌃ ;, ⌃ ;");
        QTest::addRow("gtk semicolon keysym") << QStringLiteral(";;<Primary>semicolon")
                                              << QStringLiteral("Comment") << QStringLiteral("⌃ ;");
        QTest::addRow("gtk all fields empty")
            << QStringLiteral(";;") << QStringLiteral("Item") << QStringLiteral("-");
    }
    void chords()
    {
        QFETCH(QString, binding);
        QFETCH(QString, title);
        QFETCH(QString, chord);
        QCOMPARE(chordOf(binding, title), chord);
    }

    void virtualKeysFollowTheScannerTable_data()
    {
        QTest::addColumn<QString>("keysym");
        QTest::addColumn<int>("code");
        QTest::addRow("Up") << QStringLiteral("Up") << 126;
        QTest::addRow("Down") << QStringLiteral("Down") << 125;
        QTest::addRow("Left") << QStringLiteral("Left") << 123;
        QTest::addRow("Right") << QStringLiteral("Right") << 124;
        QTest::addRow("Delete") << QStringLiteral("Delete") << 117;
        QTest::addRow("BackSpace") << QStringLiteral("BackSpace") << 51;
        QTest::addRow("Return") << QStringLiteral("Return") << 36;
        QTest::addRow("KP_Enter") << QStringLiteral("KP_Enter") << 76;
        QTest::addRow("Tab") << QStringLiteral("Tab") << 48;
        QTest::addRow("Escape") << QStringLiteral("Escape") << 53;
        QTest::addRow("Home") << QStringLiteral("Home") << 115;
        QTest::addRow("End") << QStringLiteral("End") << 119;
        QTest::addRow("Page_Up") << QStringLiteral("Page_Up") << 116;
        QTest::addRow("Page_Down") << QStringLiteral("Page_Down") << 121;
        QTest::addRow("F1") << QStringLiteral("F1") << 122;
        QTest::addRow("F2") << QStringLiteral("F2") << 120;
        QTest::addRow("F3") << QStringLiteral("F3") << 99;
        QTest::addRow("F4") << QStringLiteral("F4") << 118;
        QTest::addRow("F5") << QStringLiteral("F5") << 96;
        QTest::addRow("F6") << QStringLiteral("F6") << 97;
        QTest::addRow("F7") << QStringLiteral("F7") << 98;
        QTest::addRow("F8") << QStringLiteral("F8") << 100;
        QTest::addRow("F9") << QStringLiteral("F9") << 101;
        QTest::addRow("F10") << QStringLiteral("F10") << 109;
        QTest::addRow("F11") << QStringLiteral("F11") << 103;
        QTest::addRow("F12") << QStringLiteral("F12") << 111;
    }
    void virtualKeysFollowTheScannerTable()
    {
        QFETCH(QString, keysym);
        QFETCH(int, code);
        QCOMPARE(AtspiKeyBinding::virtualKeyForKeysymName(keysym), std::optional<int>(code));
        // Every code handed out has a symbol in the scanner's table.
        QVERIFY(MenuReader::virtualKeySymbol(code));
    }

    void modifierMask()
    {
        const auto control = AtspiKeyBinding::parse(QStringLiteral(";;<Primary>s"), QString());
        QVERIFY(control);
        QCOMPARE(control->modifiers, 4 | 8);
        QCOMPARE(control->character, std::optional<QString>(QStringLiteral("s")));
        const auto all = AtspiKeyBinding::parse(QStringLiteral("Ctrl+Alt+Shift+Meta+K"), QString());
        QVERIFY(all);
        QCOMPARE(all->modifiers, 4 | 2 | 1);
        const auto plain = AtspiKeyBinding::parse(QStringLiteral("F11"), QString());
        QVERIFY(plain);
        QCOMPARE(plain->modifiers, 8);
        QCOMPARE(plain->virtualKey, std::optional<int>(103));
        QVERIFY(!plain->character);
    }
};

QTEST_GUILESS_MAIN(TestAtspiKeyBinding)
#include "tst_AtspiKeyBinding.moc"
