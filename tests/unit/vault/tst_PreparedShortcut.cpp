// SPDX-License-Identifier: MIT
#include "VaultTestSupport.h"

#include "search/FuzzyMatch.h"
#include "vault/PreparedShortcut.h"

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
    QTest::addColumn<quint32>("seed");
    for (quint32 seed : {11u, 12u, 13u, 14u})
        QTest::addRow("seed %u", seed) << seed;
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
    const auto text = [&](int maxLength) {
        QString result;
        const int length = random.bounded(maxLength + 1);
        for (int i = 0; i < length; ++i)
            result += pieces.at(random.bounded(pieces.size()));
        return result;
    };
    for (int i = 0; i < 400; ++i) {
        ShortcutItem entry = item(text(6), text(3));
        if (random.bounded(2))
            entry.menu = text(5);
        if (random.bounded(2))
            entry.tags = QStringList{text(3), text(3)};
        const PreparedShortcut prepared(entry);
        for (int j = 0; j < 5; ++j) {
            const QString query = text(3);
            QCOMPARE(prepared.score(PreparedShortcut::Query::fromTyped(query)),
                     FuzzyMatch::score(query, entry));
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

QTEST_GUILESS_MAIN(TestPreparedShortcut)
#include "tst_PreparedShortcut.moc"
