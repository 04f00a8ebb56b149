// SPDX-License-Identifier: MIT
#include "VaultTestSupport.h"

#include "search/FuzzyMatch.h"
#include "search/FuzzyQuery.h"
#include "search/FuzzyShortcut.h"
#include "vault/PreparedShortcut.h"
#include "vault/PreparedShortcutList.h"
#include "vault/ShortcutKeyTable.h"

#include <QRandomGenerator>
#include <QtTest>

using namespace Tessaline;
using namespace VaultTestSupport;

class TestPreparedShortcut : public QObject
{
    Q_OBJECT

private slots:
    void quickCheckNeverHidesAMatch_data();
    void quickCheckNeverHidesAMatch();
    void agreesWithThePlainScoreOnRandomText_data();
    void agreesWithThePlainScoreOnRandomText();
    void quickCheckTurnsAwayPlainMisses();
    void aQueryMustFitInOneText();
    void wholeTextsSettlePlainQueries_data();
    void wholeTextsSettlePlainQueries();
    void inexactTextsAndQueriesAreLeftToTheMatcher();
};

void TestPreparedShortcut::quickCheckNeverHidesAMatch_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("query");
    QTest::addRow("kelvin sign") << QStringLiteral("\u212A Temperature") << QStringLiteral("kt");
    QTest::addRow("greek question mark") << QStringLiteral("Why\u037E") << QStringLiteral("y;");
    QTest::addRow("greek varia") << QStringLiteral("a\u1FEF") << QStringLiteral("a`");
    QTest::addRow("upper-case query") << QStringLiteral("New Slide") << QStringLiteral("NS");
    QTest::addRow("modifier in chord") << QStringLiteral("Save") << QStringLiteral("⌃ s");
    QTest::addRow("accent in query") << QStringLiteral("Résumé") << QStringLiteral("ré");
    QTest::addRow("decomposed accent")
        << QStringLiteral("Re\u0301sume\u0301") << QStringLiteral("r\u00e9");
}

void TestPreparedShortcut::quickCheckNeverHidesAMatch()
{
    QFETCH(QString, name);
    QFETCH(QString, query);
    const ShortcutItem entry = item(name, QStringLiteral("⌃ S"));
    const std::optional<qint64> plain = FuzzyMatch::score(query, entry);
    QVERIFY(plain.has_value());
    QCOMPARE(PreparedShortcut(entry).score(PreparedShortcut::Query::fromTyped(query)), plain);
}

void TestPreparedShortcut::agreesWithThePlainScoreOnRandomText_data()
{
    addSeedRows({11u, 12u, 13u, 14u});
}

void TestPreparedShortcut::agreesWithThePlainScoreOnRandomText()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QStringList pieces{
        QStringLiteral("a"), QStringLiteral("S"),        QStringLiteral("s"),
        QStringLiteral("é"), QStringLiteral("e\u0301"),  QStringLiteral("E"),
        QStringLiteral(" "), QStringLiteral("-"),        QStringLiteral("\u212A"),
        QStringLiteral("k"), QStringLiteral("\u037E"),   QStringLiteral(";"),
        QStringLiteral("⌘"), QStringLiteral("👍🏽"), QStringLiteral("İ"),
        QStringLiteral("i"), QStringLiteral("ß")};
    const auto text = [&](int maxLength) { return randomText(random, pieces, maxLength); };
    // The packed pre-checks of a list answer as each item's own, and the matcher's yes-or-no
    // answer agrees with its score.
    ShortcutKeyTable table;
    QList<ShortcutSearchKey> keys;
    QList<ShortcutItem> entries;
    for (int i = 0; i < 400; ++i) {
        ShortcutItem entry = item(text(6), text(3));
        if (random.bounded(2))
            entry.menu = text(5);
        if (random.bounded(2))
            entry.tags = QStringList{text(3), text(3)};
        entries.append(entry);
        keys.append(ShortcutSearchKey(entry));
        table.append(keys.back());
        const PreparedShortcut prepared(entry);
        const FuzzyShortcut fuzzy(entry);
        for (int j = 0; j < 5; ++j) {
            const QString typed = text(3);
            const PreparedShortcut::Query query = PreparedShortcut::Query::fromTyped(typed);
            const std::optional<qint64> plain = FuzzyMatch::score(typed, entry);
            QCOMPARE(prepared.score(query), plain);
            QCOMPARE(FuzzyMatch::matches(query.fuzzy, fuzzy), plain.has_value());
            const ShortcutSearchKey::Verdict verdict =
                table.judge(i, query.ascii, query.asciiMask, query.asciiIsExact);
            QCOMPARE(verdict != ShortcutSearchKey::Verdict::NoMatch,
                     keys.back().mayMatch(query.ascii, query.asciiMask));
            if (verdict == ShortcutSearchKey::Verdict::Matches)
                QVERIFY(plain.has_value());
        }
    }
    QCOMPARE(table.size(), entries.size());

    // The prepared list answers for every item as the plain matcher does.
    const PreparedShortcutList list(entries);
    QCOMPARE(list.size(), entries.size());
    for (qsizetype i = 0; i < entries.size(); ++i) {
        for (const QString& typed : {text(3), entries[i].name.left(2), entries[i].chord}) {
            const PreparedShortcut::Query query = PreparedShortcut::Query::fromTyped(typed);
            const std::optional<qint64> plain = FuzzyMatch::score(typed, entries[i]);
            QCOMPARE(list.score(i, query), plain);
            QCOMPARE(list.matches(i, query), plain.has_value());
        }
    }
}

void TestPreparedShortcut::quickCheckTurnsAwayPlainMisses()
{
    const ShortcutItem entry = item(QStringLiteral("Save"), QStringLiteral("⌃ S"));
    QVERIFY(
        !PreparedShortcut(entry).score(PreparedShortcut::Query::fromTyped(QStringLiteral("qz"))));
    QCOMPARE(
        PreparedShortcut(entry).score(PreparedShortcut::Query::fromTyped(QStringLiteral("  "))),
        std::optional<qint64>(0));
}

void TestPreparedShortcut::aQueryMustFitInOneText()
{
    // "sq": the s is in the name and the q in the chord, but no single text holds both.
    ShortcutItem entry = item(QStringLiteral("Save"), QStringLiteral("⌃ Q"));
    entry.menu = QStringLiteral("File > Open");
    entry.tags = QStringList{QStringLiteral("file"), QStringLiteral("quit")};
    const ShortcutSearchKey key(entry);
    const auto mayMatch = [&](const QString& typed) {
        const QByteArray ascii = ShortcutSearchKey::asciiQuery(typed);
        return key.mayMatch(ascii, ShortcutSearchKey::maskOf(ascii));
    };
    QVERIFY(!FuzzyMatch::score(QStringLiteral("sq"), entry));
    QVERIFY(!mayMatch(QStringLiteral("sq")));
    QVERIFY(!mayMatch(QStringLiteral("filequit")));
    QVERIFY(mayMatch(QStringLiteral("sv")));
    QVERIFY(mayMatch(QStringLiteral("qt")));
    QVERIFY(mayMatch(QStringLiteral("\u2303 q").isEmpty() ? QString() : QStringLiteral("q")));
    QVERIFY(
        !FuzzyMatch::matches(FuzzyQuery::searchTerm(QStringLiteral("sq")), FuzzyShortcut(entry)));
    QVERIFY(
        FuzzyMatch::matches(FuzzyQuery::searchTerm(QStringLiteral("qt")), FuzzyShortcut(entry)));
}

void TestPreparedShortcut::wholeTextsSettlePlainQueries_data()
{
    addSeedRows({21u, 22u, 23u});
}

void TestPreparedShortcut::wholeTextsSettlePlainQueries()
{
    // Texts and queries of ASCII characters, with a few that are not: for a query of single
    // ASCII characters, a text kept whole that holds it must be one the matcher finds.
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QStringList pieces{
        QStringLiteral("a"),      QStringLiteral("A"),      QStringLiteral("b"),
        QStringLiteral("S"),      QStringLiteral("s"),      QStringLiteral(" "),
        QStringLiteral("-"),      QStringLiteral("\r\n"),   QStringLiteral("\r"),
        QStringLiteral("\n"),     QStringLiteral("\u212A"), QStringLiteral("k"),
        QStringLiteral("\u037E"), QStringLiteral(";"),      QStringLiteral("é")};
    const auto text = [&](int maxLength) { return randomText(random, pieces, maxLength); };
    int decided = 0;
    for (int i = 0; i < 600; ++i) {
        ShortcutItem entry = item(text(6), text(3));
        if (random.bounded(2))
            entry.tags = QStringList{text(3)};
        const ShortcutSearchKey key(entry);
        for (int j = 0; j < 6; ++j) {
            const QString typed = text(3);
            const PreparedShortcut::Query query = PreparedShortcut::Query::fromTyped(typed);
            if (!query.asciiIsExact)
                continue;
            const ShortcutSearchKey::Verdict verdict =
                ShortcutSearchKey::judge(key.kept(), query.ascii, true);
            const bool found = FuzzyMatch::score(typed, entry).has_value();
            if (verdict == ShortcutSearchKey::Verdict::NoMatch)
                QVERIFY(!found);
            if (verdict == ShortcutSearchKey::Verdict::Matches) {
                QVERIFY(found);
                ++decided;
            }
        }
    }
    QVERIFY2(decided > 100, "too few texts were settled by the pre-check alone");
}

void TestPreparedShortcut::inexactTextsAndQueriesAreLeftToTheMatcher()
{
    // A carriage return and a line feed make one character, which a lone line feed does not
    // match: such a text is not kept whole, though its bytes hold the query's.
    const ShortcutItem crlf = item(QStringLiteral("Go\r\nBack"), QStringLiteral("x"));
    const PreparedShortcut::Query query =
        PreparedShortcut::Query::fromTyped(QStringLiteral("o\nb"));
    QVERIFY(query.asciiIsExact);
    QVERIFY(!FuzzyMatch::score(QStringLiteral("o\nb"), crlf));
    QCOMPARE(ShortcutSearchKey::judge(ShortcutSearchKey(crlf).kept(), query.ascii, true),
             ShortcutSearchKey::Verdict::MayMatch);
    QVERIFY(!PreparedShortcut(crlf).score(query));
    // A plain text settles it; a chord with a symbol does not.
    const ShortcutItem plain = item(QStringLiteral("Go Back"), QStringLiteral("⌘ ["));
    QCOMPARE(ShortcutSearchKey::judge(ShortcutSearchKey(plain).kept(), "gb", true),
             ShortcutSearchKey::Verdict::Matches);
    QCOMPARE(ShortcutSearchKey::judge(ShortcutSearchKey(plain).kept(), "gb", false),
             ShortcutSearchKey::Verdict::MayMatch);
    QCOMPARE(ShortcutSearchKey::judge(ShortcutSearchKey(plain).kept(), " [", true),
             ShortcutSearchKey::Verdict::MayMatch);
    QCOMPARE(ShortcutSearchKey::judge(ShortcutSearchKey(plain).kept(), "bg", true),
             ShortcutSearchKey::Verdict::NoMatch);
    // A character that stands for ASCII only after composition leaves the query inexact.
    QVERIFY(!PreparedShortcut::Query::fromTyped(QStringLiteral("a\u037E")).asciiIsExact);
    QVERIFY(PreparedShortcut::Query::fromTyped(QStringLiteral("a;")).asciiIsExact);
}

QTEST_GUILESS_MAIN(TestPreparedShortcut)
#include "tst_PreparedShortcut.moc"
