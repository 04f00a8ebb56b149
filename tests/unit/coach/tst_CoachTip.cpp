// SPDX-License-Identifier: MIT
#include "coach/CoachTip.h"

#include <QSet>
#include <QtTest>

using Tessaline::CoachTip;

class TestCoachTip : public QObject
{
    Q_OBJECT

private slots:
    void tipsHaveTheirExactTexts_data();
    void tipsHaveTheirExactTexts();
    void allListsTheFourTipsInOrder();
    void equalityAndHashingCoverEveryField();
};

void TestCoachTip::tipsHaveTheirExactTexts_data()
{
    QTest::addColumn<CoachTip>("tip");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");

    QTest::addRow("screenshot")
        << CoachTip::screenshotToolbar() << QStringLiteral("screenshot-toolbar")
        << QStringLiteral("Screenshot toolbar")
        << QStringLiteral(
               "Cmd + Shift + 5 opens the full screenshot panel, including recording controls.");
    QTest::addRow("volume")
        << CoachTip::volumePrecision() << QStringLiteral("volume-precision")
        << QStringLiteral("Tiny volume steps")
        << QStringLiteral(
               "Hold Option + Shift while pressing volume up/down for quarter-step changes.");
    QTest::addRow("brightness")
        << CoachTip::brightnessPrecision() << QStringLiteral("brightness-precision")
        << QStringLiteral("Tiny brightness steps")
        << QStringLiteral(
               "Hold Option + Shift while pressing brightness up/down for quarter-step changes.");
    QTest::addRow("media") << CoachTip::mediaKeys() << QStringLiteral("media-keys")
                           << QStringLiteral("Media keys are global")
                           << QStringLiteral("Play/pause and skip usually work even when Music or "
                                             "Spotify is not the front app.");
}

void TestCoachTip::tipsHaveTheirExactTexts()
{
    QFETCH(CoachTip, tip);
    QFETCH(QString, id);
    QFETCH(QString, title);
    QFETCH(QString, message);
    QCOMPARE(tip.id, id);
    QCOMPARE(tip.title, title);
    QCOMPARE(tip.message, message);
}

void TestCoachTip::allListsTheFourTipsInOrder()
{
    const QList<CoachTip> expected{CoachTip::screenshotToolbar(), CoachTip::volumePrecision(),
                                   CoachTip::brightnessPrecision(), CoachTip::mediaKeys()};
    QCOMPARE(CoachTip::all(), expected);
}

void TestCoachTip::equalityAndHashingCoverEveryField()
{
    const CoachTip tip = CoachTip::mediaKeys();
    CoachTip otherTitle = tip;
    otherTitle.title += QLatin1Char('!');
    CoachTip otherMessage = tip;
    otherMessage.message.clear();
    CoachTip otherId = tip;
    otherId.id = QStringLiteral("media");

    QCOMPARE(tip, CoachTip::mediaKeys());
    QVERIFY(tip != otherTitle);
    QVERIFY(tip != otherMessage);
    QVERIFY(tip != otherId);
    QCOMPARE(qHash(tip), qHash(CoachTip::mediaKeys()));

    const QSet<CoachTip> set{tip, CoachTip::mediaKeys(), otherTitle, otherMessage, otherId};
    QCOMPARE(set.size(), 4);
}

QTEST_APPLESS_MAIN(TestCoachTip)
#include "tst_CoachTip.moc"
