// SPDX-License-Identifier: MIT
// Chords in the stored symbol form and in the words Linux desktops write, both ways.
#include "vault/ChordText.h"

#include <QtTest>

using namespace Tessaline;

class TestChordText : public QObject
{
    Q_OBJECT

private slots:
    void toWords_data()
    {
        QTest::addColumn<QString>("chord");
        QTest::addColumn<QString>("words");
        QTest::addRow("control") << u"⌃ S"_qs << u"Ctrl+S"_qs;
        QTest::addRow("control shift") << u"⌃ ⇧ S"_qs << u"Ctrl+Shift+S"_qs;
        QTest::addRow("all four") << u"⌃ ⌥ ⇧ ⌘ K"_qs << u"Ctrl+Alt+Shift+Super+K"_qs;
        QTest::addRow("super is Super") << u"⌘ Space"_qs << u"Super+Space"_qs;
        QTest::addRow("alt arrow") << u"⌥ ↑"_qs << u"Alt+Up"_qs;
        QTest::addRow("bare arrow") << u"←"_qs << u"Left"_qs;
        QTest::addRow("key of two words") << u"⌃ Page Down"_qs << u"Ctrl+Page Down"_qs;
        QTest::addRow("plus key") << u"⌃ +"_qs << u"Ctrl++"_qs;
        QTest::addRow("comma key") << u"⌃ ,"_qs << u"Ctrl+,"_qs;
        QTest::addRow("sequence") << u"⌃ K, ⌃ C"_qs << u"Ctrl+K, Ctrl+C"_qs;
        QTest::addRow("sequence after a comma key") << u"⌃ ,, ⌃ C"_qs << u"Ctrl+,, Ctrl+C"_qs;
        QTest::addRow("symbols without spaces") << u"⌘C"_qs << u"Super+C"_qs;
        QTest::addRow("bare key stays") << u"F11"_qs << u"F11"_qs;
        QTest::addRow("words stay") << u"Ctrl+Alt+T"_qs << u"Ctrl+Alt+T"_qs;
        QTest::addRow("free text stays") << u"Press twice"_qs << u"Press twice"_qs;
        QTest::addRow("empty") << QString() << QString();
    }
    void toWords()
    {
        QFETCH(QString, chord);
        QFETCH(QString, words);
        QCOMPARE(ChordText::toWords(chord), words);
        QCOMPARE(ChordText::display(chord, KeyNameStyle::Words), words);
        QCOMPARE(ChordText::display(chord, KeyNameStyle::Symbols), ChordText::toSymbols(chord));
    }

    void toSymbols_data()
    {
        QTest::addColumn<QString>("chord");
        QTest::addColumn<QString>("symbols");
        QTest::addRow("no super stays") << u"⌃ ⇧ S"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("super spaced") << u"⌃ ⌘ Q"_qs << u"⌃ Super Q"_qs;
        QTest::addRow("super unspaced") << u"⌃⌥⌘K"_qs << u"⌃⌥Super K"_qs;
        QTest::addRow("super alone") << u"⌘"_qs << u"Super"_qs;
        QTest::addRow("sequence") << u"⌘ K, ⌘ C"_qs << u"Super K, Super C"_qs;
        QTest::addRow("words stay") << u"Super+Space"_qs << u"Super+Space"_qs;
        QTest::addRow("empty") << QString() << QString();
    }
    void toSymbols()
    {
        QFETCH(QString, chord);
        QFETCH(QString, symbols);
        QCOMPARE(ChordText::toSymbols(chord), symbols);
        QCOMPARE(ChordText::display(chord, KeyNameStyle::Symbols), symbols);
    }

    void symbolQuery_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("symbols");
        QTest::addRow("ctrl s") << u"ctrl s"_qs << u"⌃ S"_qs;
        QTest::addRow("written like a desktop") << u"Ctrl+Shift+S"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("any order") << u"shift ctrl s"_qs << u"⌃ ⇧ S"_qs;
        QTest::addRow("control spelled out") << u"control o"_qs << u"⌃ O"_qs;
        QTest::addRow("super space") << u"super space"_qs << u"⌘ Space"_qs;
        QTest::addRow("meta is super") << u"meta l"_qs << u"⌘ L"_qs;
        QTest::addRow("alt up") << u"alt up"_qs << u"⌥ ↑"_qs;
        QTest::addRow("function key") << u"alt f4"_qs << u"⌥ F4"_qs;
        QTest::addRow("page keys") << u"ctrl pgdn"_qs << u"⌃ Page Down"_qs;
        QTest::addRow("plus key") << u"Ctrl++"_qs << u"⌃ +"_qs;
        QTest::addRow("modifier alone") << u"ctrl"_qs << u"⌃"_qs;
        QTest::addRow("mixed with a symbol") << u"ctrl ⇧ s"_qs << u"⌃ ⇧ S"_qs;
    }
    void symbolQuery()
    {
        QFETCH(QString, query);
        QFETCH(QString, symbols);
        QCOMPARE(ChordText::symbolQuery(query), std::optional<QString>(symbols));
    }

    void queriesWithoutKeyWordsAreLeftAlone_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addRow("a word") << u"save"_qs;
        QTest::addRow("a word holding ctrl") << u"ctrlx"_qs;
        QTest::addRow("symbols") << u"⌃ S"_qs;
        QTest::addRow("key words without a modifier") << u"page down"_qs;
        QTest::addRow("empty") << QString();
    }
    void queriesWithoutKeyWordsAreLeftAlone()
    {
        QFETCH(QString, query);
        QCOMPARE(ChordText::symbolQuery(query), std::nullopt);
    }

    // Every chord of the stored form survives words -> typed query -> symbols.
    void wordsReadBackAsTheStoredChord_data()
    {
        QTest::addColumn<QString>("chord");
        for (const QString& chord : {u"⌃ S"_qs, u"⌃ ⇧ S"_qs, u"⌃ ⌥ ⇧ ⌘ K"_qs, u"⌥ ↑"_qs,
                                     u"⌃ Page Down"_qs, u"⌘ Space"_qs, u"⌃ +"_qs, u"⌃ ⌥ F4"_qs})
            QTest::addRow("%s", qPrintable(chord)) << chord;
    }
    void wordsReadBackAsTheStoredChord()
    {
        QFETCH(QString, chord);
        QCOMPARE(ChordText::symbolQuery(ChordText::toWords(chord)), std::optional<QString>(chord));
    }
};

QTEST_APPLESS_MAIN(TestChordText)
#include "tst_ChordText.moc"
