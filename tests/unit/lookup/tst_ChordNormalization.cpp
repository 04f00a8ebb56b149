// SPDX-License-Identifier: MIT
// Chords written either way meet in one canonical form, and key codes give the same form.
#include "vault/ChordText.h"

#include <QtTest>

using namespace Tessaline;

class TestChordNormalization : public QObject
{
    Q_OBJECT

private slots:
    void normalized_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("canonical");
        QTest::addRow("stored form stays") << u"⌃ ⇧ S"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("words") << u"Ctrl+Shift+S"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("words in any order and case") << u"shift+ctrl+s"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("words with spaces") << u"Ctrl Shift S"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("symbols without spaces") << u"⌃⇧S"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("symbols out of order") << u"⇧ ⌃ S"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("super written as a word") << u"⌃ Super Q"_qs << u"⌃ ⌘ Q"_qs;
        QTest::addRow("meta is super") << u"Meta+Q"_qs << u"⌘ Q"_qs;
        QTest::addRow("control word") << u"Control+Alt+T"_qs << u"⌃ ⌥ T"_qs;
        QTest::addRow("arrow word") << u"Alt+Up"_qs << u"⌥ ↑"_qs;
        QTest::addRow("arrow symbol") << u"⌥ ↑"_qs << u"⌥ ↑"_qs;
        QTest::addRow("two-word key") << u"Ctrl+Page Down"_qs << u"⌃ Page Down"_qs;
        QTest::addRow("two-word key joined") << u"ctrl+pagedown"_qs << u"⌃ Page Down"_qs;
        QTest::addRow("plus key in words") << u"Ctrl++"_qs << u"⌃ +"_qs;
        QTest::addRow("plus key in symbols") << u"⌃ +"_qs << u"⌃ +"_qs;
        QTest::addRow("comma key") << u"Ctrl+,"_qs << u"⌃ ,"_qs;
        QTest::addRow("minus key") << u"⌃ -"_qs << u"⌃ -"_qs;
        QTest::addRow("bare function key") << u"f5"_qs << u"F5"_qs;
        QTest::addRow("escape") << u"Escape"_qs << u"Esc"_qs;
        QTest::addRow("escape symbol") << u"⎋"_qs << u"Esc"_qs;
        QTest::addRow("backspace is delete") << u"BackSpace"_qs << u"Delete"_qs;
        QTest::addRow("enter is return") << u"Ctrl+Enter"_qs << u"⌃ Return"_qs;
        QTest::addRow("unknown name capitalised") << u"shift+volume up"_qs << u"⇧ Volume Up"_qs;
        QTest::addRow("key without a one-letter capital") << u"⌃ ß"_qs << u"⌃ ß"_qs;
        QTest::addRow("sequence") << u"Ctrl+K, Ctrl+C"_qs << u"⌃ K, ⌃ C"_qs;
        QTest::addRow("sequence in symbols") << u"⌃ K, ⌃ C"_qs << u"⌃ K, ⌃ C"_qs;
        QTest::addRow("sequence after a comma key") << u"⌃ ,, ⌃ C"_qs << u"⌃ ,, ⌃ C"_qs;
    }
    void normalized()
    {
        QFETCH(QString, written);
        QFETCH(QString, canonical);
        QCOMPARE(ChordText::normalized(written), std::optional<QString>(canonical));
        // Canonical text is its own canonical form.
        QCOMPARE(ChordText::normalized(canonical), std::optional<QString>(canonical));
    }

    void textsWithoutAKeyAreNone_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addRow("empty") << QString();
        QTest::addRow("blank") << u"   "_qs;
        QTest::addRow("modifiers only") << u"Ctrl+Shift"_qs;
        QTest::addRow("symbols only") << u"⌃ ⇧"_qs;
        QTest::addRow("control character") << u"Ctrl+\u0001"_qs;
        QTest::addRow("a sequence with a chord of modifiers only") << u"Ctrl+Shift, +X"_qs;
        // Modifier symbols stand before the key; after it they name no key (and would make the
        // ", " that follows read as the comma key the second time round).
        QTest::addRow("a modifier symbol after the key") << u"a⌃ Ctrl, +"_qs;
        QTest::addRow("a modifier symbol inside the key") << u"⌃ F⇧5"_qs;
    }
    void textsWithoutAKeyAreNone()
    {
        QFETCH(QString, written);
        QCOMPARE(ChordText::normalized(written), std::nullopt);
    }

    void fromKeyCode_data()
    {
        QTest::addColumn<quint32>("code");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<QString>("chord");
        QTest::addRow("control shift s") << 1u << 0x1200u << u"⌃ ⇧ S"_qs;
        QTest::addRow("all four on k") << 40u << 0x1B00u << u"⌃ ⌥ ⇧ ⌘ K"_qs;
        QTest::addRow("alt up") << 126u << 0x800u << u"⌥ ↑"_qs;
        QTest::addRow("page down") << 121u << 0x1000u << u"⌃ Page Down"_qs;
        QTest::addRow("plain f5") << 96u << 0u << u"F5"_qs;
        QTest::addRow("escape") << 53u << 0u << u"Esc"_qs;
        QTest::addRow("comma") << 43u << 0x1000u << u"⌃ ,"_qs;
        QTest::addRow("forward delete") << 117u << 0u << u"Delete"_qs;
    }
    void fromKeyCode()
    {
        QFETCH(quint32, code);
        QFETCH(quint32, modifiers);
        QFETCH(QString, chord);
        QCOMPARE(ChordText::fromKeyCode(code, modifiers), std::optional<QString>(chord));
    }

    void unknownKeyCodeIsNone()
    {
        QCOMPARE(ChordText::fromKeyCode(52, 0x1000), std::nullopt);
        QCOMPARE(ChordText::fromKeyCode(500, 0), std::nullopt);
    }
};

QTEST_APPLESS_MAIN(TestChordNormalization)
#include "tst_ChordNormalization.moc"
