// SPDX-License-Identifier: MIT
#include "commands/ChordKeystrokes.h"

#include <QtTest>

using namespace Tessaline;
using namespace Qt::Literals::StringLiterals;

using Strokes = QList<KeyStroke>;

class TestChordKeystrokes : public QObject
{
    Q_OBJECT

private slots:
    void chords_data();
    void chords();
    void chordsWithoutAKey_data();
    void chordsWithoutAKey();
};

void TestChordKeystrokes::chords_data()
{
    QTest::addColumn<QString>("chord");
    QTest::addColumn<Strokes>("strokes");
    constexpr int ctrl = KeyStroke::Control;
    constexpr int shift = KeyStroke::Shift;
    constexpr int alt = KeyStroke::Alt;
    constexpr int super = KeyStroke::Super;
    QTest::addRow("letter in lower case") << u"⌃ S"_s << Strokes{{ctrl, u"s"_s}};
    QTest::addRow("modifiers in any order")
        << u"⌃ ⌥ ⇧ ⌘ N"_s << Strokes{{ctrl | alt | shift | super, u"n"_s}};
    QTest::addRow("super written out") << u"⌃ Super Q"_s << Strokes{{ctrl | super, u"q"_s}};
    QTest::addRow("symbol key") << u"⌃ +"_s << Strokes{{ctrl, u"+"_s}};
    QTest::addRow("comma key") << u"⌃ ,"_s << Strokes{{ctrl, u","_s}};
    QTest::addRow("key name with a space") << u"⌃ Page Up"_s << Strokes{{ctrl, u"Page_Up"_s}};
    QTest::addRow("arrow") << u"⌥ ↑"_s << Strokes{{alt, u"Up"_s}};
    QTest::addRow("return") << u"⌃ Return"_s << Strokes{{ctrl, u"Return"_s}};
    QTest::addRow("escape") << u"Esc"_s << Strokes{{0, u"Escape"_s}};
    QTest::addRow("space") << u"⌃ Space"_s << Strokes{{ctrl, u"space"_s}};
    QTest::addRow("delete key") << u"⇧ Delete"_s << Strokes{{shift, u"Delete"_s}};
    QTest::addRow("backspace symbol") << u"⌥ ⌫"_s << Strokes{{alt, u"BackSpace"_s}};
    QTest::addRow("function key") << u"F11"_s << Strokes{{0, u"F11"_s}};
    QTest::addRow("other keysym name") << u"⌃ KP_Add"_s << Strokes{{ctrl, u"KP_Add"_s}};
    QTest::addRow("lone shift symbol is the key") << u"⇧"_s << Strokes{{0, u"⇧"_s}};
    QTest::addRow("sequence") << u"⌃ K, ⌃ C"_s << Strokes{{ctrl, u"k"_s}, {ctrl, u"c"_s}};
    QTest::addRow("sequence of a comma key")
        << u"⌃ ,, ⌃ C"_s << Strokes{{ctrl, u","_s}, {ctrl, u"c"_s}};
    QTest::addRow("non-latin letter") << u"⌃ Ä"_s << Strokes{{ctrl, u"ä"_s}};
}

void TestChordKeystrokes::chords()
{
    QFETCH(QString, chord);
    QFETCH(Strokes, strokes);
    const std::optional<Strokes> parsed = ChordKeystrokes::fromChord(chord);
    QVERIFY(parsed);
    QCOMPARE(parsed->size(), strokes.size());
    for (qsizetype i = 0; i < strokes.size(); ++i) {
        QCOMPARE(parsed->at(i).modifiers, strokes.at(i).modifiers);
        QCOMPARE(parsed->at(i).key, strokes.at(i).key);
    }
}

void TestChordKeystrokes::chordsWithoutAKey_data()
{
    QTest::addColumn<QString>("chord");
    QTest::addRow("empty") << QString();
    QTest::addRow("blank") << u"   "_s;
}

void TestChordKeystrokes::chordsWithoutAKey()
{
    QFETCH(QString, chord);
    QVERIFY(!ChordKeystrokes::fromChord(chord));
}

QTEST_GUILESS_MAIN(TestChordKeystrokes)
#include "tst_ChordKeystrokes.moc"
