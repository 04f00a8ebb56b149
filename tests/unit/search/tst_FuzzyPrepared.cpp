// SPDX-License-Identifier: MIT
#include "search/FuzzyMatch.h"
#include "search/FuzzyQuery.h"
#include "search/FuzzyShortcut.h"
#include "search/FuzzyText.h"
#include "search/Graphemes.h"
#include "vault/ShortcutItem.h"

#include <QRandomGenerator>
#include <QtTest>

using namespace Tessaline;
using namespace Qt::Literals::StringLiterals;

namespace {

// Pieces random texts are made of: ASCII of every class that matters to the matcher, and
// characters whose lower-casing, composition or segmentation is not one unit to one character.
const QStringList& pieces()
{
    static const QStringList list{
        u"a"_s,
        u"b"_s,
        u"n"_s,
        u"s"_s,
        u"x"_s,
        u"A"_s,
        u"B"_s,
        u"N"_s,
        u"S"_s,
        u"X"_s,
        u" "_s,
        u"/"_s,
        u">"_s,
        u"-"_s,
        u"_"_s,
        u"."_s,
        u"\t"_s,
        u"1"_s,
        u"\r"_s,
        u"\n"_s,
        u"\r\n"_s,
        u"e\u0301"_s,                                    // e + combining acute
        u"E\u0301"_s,                                    // capital E + combining acute
        u"\u00e9"_s,                                     // precomposed é
        u"\u00c9"_s,                                     // precomposed É
        u"\u0301"_s,                                     // a lone combining mark
        u"\U0001F44D"_s,                                 // thumbs up
        u"\U0001F44D\U0001F3FD"_s,                       // thumbs up, medium skin tone
        u"\U0001F3FD"_s,                                 // a lone skin tone
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s, // family, joined
        u"\U0001F1E9\U0001F1EA"_s,                       // flag
        u"\u2610\uFE0F"_s,                               // ballot box with emoji presentation
        u"\u03a3"_s,
        u"\u03c3"_s,
        u"\u03c2"_s, // Σ σ ς
        u"\u00df"_s,
        u"\u1e9e"_s, // ß ẞ
        u"\u0130"_s,
        u"\u0131"_s,
        u"i"_s,
        u"I"_s, // İ ı i I
        u"\u0392"_s,
        u"\u03b2"_s, // Β β
        u"\u00aa"_s,
        u"\u24b7"_s,
        u"\u24d1"_s,
        u"\u01c5"_s,
        u"\u2160"_s, // ª Ⓑ ⓑ ǅ Ⅰ
        u"\u2126"_s,
        u"\u212a"_s, // ohm, kelvin
        u"\uac00"_s,
        u"\u1100"_s,
        u"\u1161"_s, // Hangul syllable and jamo
        u"\u2318"_s,
        u"\u21e7"_s,
        u"\u2325"_s,
        u"\u2303"_s,
        u"\u2026"_s, // chord symbols, …
        u"\u4e2d"_s,
        u"\u0416"_s,
        u"\u0436"_s,     // CJK, Cyrillic Ж ж
        u"\U0001D400"_s, // mathematical bold capital A (outside the basic plane)
    };
    return list;
}

QString randomText(QRandomGenerator& random, int maxPieces, bool asciiOnly)
{
    const QStringList& all = pieces();
    const int count = int(random.bounded(maxPieces + 1));
    QString text;
    for (int i = 0; i < count; ++i) {
        const QString& piece = all.at(random.bounded(asciiOnly ? 20 : int(all.size())));
        text += piece;
    }
    return text;
}

// A query that often matches: characters picked from the candidate in order, sometimes with
// their case flipped, sometimes a random text.
QString queryFor(QRandomGenerator& random, const QString& candidate)
{
    if (random.bounded(4) == 0)
        return randomText(random, 3, false);
    const QStringList characters = Graphemes::split(candidate);
    QString query;
    for (const QString& character : characters) {
        if (random.bounded(3) == 0)
            query += random.bounded(2) ? character.toUpper() : character;
    }
    return query;
}

} // namespace

class TestFuzzyPrepared : public QObject
{
    Q_OBJECT

private slots:
    void simpleUnitsStandAlone();
    void knownCharacters_data();
    void knownCharacters();
    void randomTextsMatchAlike();
    void randomShortcutsScoreAlike();
    void asciiIsStoredAsBytes();
    void searchTermIsTrimmed();
};

void TestFuzzyPrepared::simpleUnitsStandAlone()
{
    // What the prepared form relies on for text of simple units: each unit is a character of
    // its own next to letters and next to itself, and composition leaves it unchanged.
    int simple = 0;
    for (char32_t unit = 0; unit < 0x10000; ++unit) {
        if (!Graphemes::isSimpleUnit(char16_t(unit)))
            continue;
        ++simple;
        const QString one{QChar(char16_t(unit))};
        QVERIFY2(one.normalized(QString::NormalizationForm_C) == one,
                 qPrintable(QString::number(unit, 16)));
        QVERIFY2(Graphemes::split(u"a"_s + one + u"a"_s).size() == 3,
                 qPrintable(QString::number(unit, 16)));
        QVERIFY2(Graphemes::split(one + one).size() == 2, qPrintable(QString::number(unit, 16)));
        // Lower-casing one unit is the simple mapping, except for the dotted capital I.
        if (unit != 0x0130) {
            QVERIFY2(one.toLower() == QString(QChar(QChar::toLower(unit))),
                     qPrintable(QString::number(unit, 16)));
        }
    }
    QVERIFY(simple > 20000);
    for (unsigned char byte = 0; byte < 128; ++byte)
        QCOMPARE(FuzzyText::asciiFlags(byte), FuzzyText::scalarFlags(byte));
    QVERIFY(!Graphemes::isSimpleUnit(u'\r'));
    QVERIFY(!Graphemes::isSimpleUnit(0x0301));
    QVERIFY(!Graphemes::isSimpleUnit(0x200D));
    QVERIFY(!Graphemes::isSimpleUnit(0xFE0F));
    QVERIFY(!Graphemes::isSimpleUnit(0xD83D));
}

void TestFuzzyPrepared::knownCharacters_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("candidate");

    QTest::addRow("decomposed accent") << u"e\u0301"_s << u"Cafe\u0301 Menu"_s;
    QTest::addRow("precomposed query") << u"\u00e9m"_s << u"Cafe\u0301 Menu"_s;
    QTest::addRow("decomposed capital hump") << u"\u00e9"_s << u"caf\u00c9"_s;
    QTest::addRow("skin tone") << u"\U0001F44D\U0001F3FDx"_s << u"a\U0001F44D\U0001F3FD x"_s;
    QTest::addRow("bare emoji") << u"\U0001F44D"_s << u"\U0001F44D\U0001F3FD\U0001F44D"_s;
    QTest::addRow("sigma") << u"\u03c3"_s << u"\u039f\u0394\u039f\u03a3"_s;
    QTest::addRow("final sigma") << u"\u03c2"_s << u"\u03bf\u03b4\u03bf\u03c2"_s;
    QTest::addRow("sharp s") << u"\u00df"_s << u"Stra\u00dfe"_s;
    QTest::addRow("capital sharp s") << u"\u00df"_s << u"STRA\u1e9eE"_s;
    QTest::addRow("dotted I") << u"\u0130s"_s << u"\u0130stanbul"_s;
    QTest::addRow("dotless i") << u"\u0131"_s << u"Ir\u0131s"_s;
    QTest::addRow("chord symbols") << u"\u2318s"_s << u"Save \u21e7 \u2318 S"_s;
    QTest::addRow("ohm sign") << u"\u03c9"_s << u"Resistance \u2126"_s;
    QTest::addRow("CR LF") << u"\r\n"_s << u"a\r\nb"_s;
    QTest::addRow("lone CR") << u"\r"_s << u"a\rb"_s;
    QTest::addRow("ASCII query, non-ASCII candidate") << u"ns"_s << u"New Slide \u2026"_s;
    QTest::addRow("non-ASCII query, ASCII candidate") << u"n\u00e9"_s << u"New"_s;
    QTest::addRow("empty query") << QString() << u"\u00e9"_s;
    QTest::addRow("empty candidate") << u"a"_s << QString();
}

void TestFuzzyPrepared::knownCharacters()
{
    QFETCH(QString, query);
    QFETCH(QString, candidate);
    const auto expected = FuzzyMatch::match(query, candidate);
    const FuzzyQuery prepared(query);
    QCOMPARE(FuzzyMatch::match(prepared, FuzzyText(candidate)), expected);
    const auto bytesScore = FuzzyMatch::matchScore(prepared, QByteArrayView(candidate.toUtf8()));
    QCOMPARE(bytesScore.has_value(), expected.has_value());
    if (expected)
        QCOMPARE(*bytesScore, expected->score);
}

void TestFuzzyPrepared::randomTextsMatchAlike()
{
    QRandomGenerator random(20240229);
    int matched = 0;
    for (int round = 0; round < 20000; ++round) {
        const bool asciiOnly = round % 3 == 0;
        const QString candidate = randomText(random, 14, asciiOnly);
        const QString query = queryFor(random, candidate);
        const auto expected = FuzzyMatch::match(query, candidate);
        const FuzzyQuery preparedQuery(query);
        const FuzzyText preparedCandidate(candidate);
        const QByteArray utf8 = candidate.toUtf8();

        const auto prepared = FuzzyMatch::match(preparedQuery, preparedCandidate);
        const auto score = FuzzyMatch::matchScore(preparedQuery, preparedCandidate);
        const auto bytes = FuzzyMatch::matchScore(preparedQuery, QByteArrayView(utf8));
        const auto context = [&] {
            return qPrintable(u"query \"%1\" candidate \"%2\""_s.arg(query, candidate));
        };
        QVERIFY2(prepared == expected, context());
        QVERIFY2(score.has_value() == expected.has_value(), context());
        QVERIFY2(bytes.has_value() == expected.has_value(), context());
        if (expected) {
            ++matched;
            QVERIFY2(*score == expected->score, context());
            QVERIFY2(*bytes == expected->score, context());
        }
    }
    // The comparison is only worth something when many pairs match.
    QVERIFY(matched > 5000);
}

void TestFuzzyPrepared::randomShortcutsScoreAlike()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 5000; ++round) {
        ShortcutItem shortcut;
        shortcut.name = randomText(random, 8, round % 2 == 0);
        shortcut.chord = randomText(random, 4, false);
        if (random.bounded(2))
            shortcut.note = randomText(random, 8, false);
        if (random.bounded(2))
            shortcut.menu = randomText(random, 8, false);
        if (random.bounded(2))
            shortcut.tags = QStringList{randomText(random, 5, false), randomText(random, 5, true)};
        QString query = queryFor(random, shortcut.name + shortcut.chord);
        if (random.bounded(4) == 0)
            query = u"  "_s + query + u"\n"_s;
        QCOMPARE(FuzzyMatch::score(FuzzyQuery::searchTerm(query), FuzzyShortcut(shortcut)),
                 FuzzyMatch::score(query, shortcut));
    }
}

void TestFuzzyPrepared::asciiIsStoredAsBytes()
{
    QVERIFY(FuzzyText(u"New Slide"_s).isAscii());
    QCOMPARE(FuzzyText(u"New Slide"_s).asciiBytes(), QByteArray("New Slide"));
    QVERIFY(!FuzzyText(u"a\r\nb"_s).isAscii());
    QCOMPARE(FuzzyText(u"a\r\nb"_s).size(), 3);
    QVERIFY(!FuzzyText(u"\u2318 S"_s).isAscii());
    QCOMPARE(FuzzyText(u"\u2318 S"_s).size(), 3);
    QCOMPARE(FuzzyText(u"e\u0301\U0001F44D\U0001F3FDx"_s).size(), 3);
    QVERIFY(FuzzyQuery(u"ns"_s).isAscii());
    QCOMPARE(FuzzyQuery(u"NS"_s).asciiKeys(), QByteArray("ns"));
    QVERIFY(!FuzzyQuery(u"\r\n"_s).isAscii());
    QCOMPARE(FuzzyQuery(u"e\u0301x"_s).size(), 2);
}

void TestFuzzyPrepared::searchTermIsTrimmed()
{
    QCOMPARE(FuzzyQuery::searchTerm(u" \t ns \n"_s).size(), 2);
    QVERIFY(FuzzyQuery::searchTerm(u"  "_s).isEmpty());
    QCOMPARE(FuzzyQuery(u" ns "_s).size(), 4);
}

QTEST_GUILESS_MAIN(TestFuzzyPrepared)
#include "tst_FuzzyPrepared.moc"
