// SPDX-License-Identifier: MIT
#include "FakeDesktopKeySettings.h"
#include "coach/CoachTip.h"

#include <QSet>
#include <QtTest>

using Tessaline::CoachTip;
using Tessaline::DesktopKeyBinding;
using Tessaline::DesktopKeySettings;
using Tessaline::Testing::FakeDesktopKeySettings;
using Action = DesktopKeySettings::Action;
using Kind = CoachTip::Kind;

class TestCoachTip : public QObject
{
    Q_OBJECT

private slots:
    void idsAndTitlesStay();
    void allKindsListsTheFourInOrder();

    void eachFamilyGetsTipsNamingItsOwnBindings_data();
    void eachFamilyGetsTipsNamingItsOwnBindings();

    void oneDirectionAloneIsNamedAlone_data();
    void oneDirectionAloneIsNamedAlone();
    void screenshotTipNamesWhatIsBound_data();
    void screenshotTipNamesWhatIsBound();
    void anyOneMediaKeyMakesThePlayerKeysGlobal();

    void noTipSpeaksAnotherSystemsLanguage();
    void equalityAndHashingCoverEveryField();
};

void TestCoachTip::idsAndTitlesStay()
{
    QCOMPARE(CoachTip::idOf(Kind::ScreenshotToolbar), QStringLiteral("screenshot-toolbar"));
    QCOMPARE(CoachTip::idOf(Kind::VolumePrecision), QStringLiteral("volume-precision"));
    QCOMPARE(CoachTip::idOf(Kind::BrightnessPrecision), QStringLiteral("brightness-precision"));
    QCOMPARE(CoachTip::idOf(Kind::MediaKeys), QStringLiteral("media-keys"));
    QCOMPARE(CoachTip::titleOf(Kind::ScreenshotToolbar), QStringLiteral("Screenshot toolbar"));
    QCOMPARE(CoachTip::titleOf(Kind::VolumePrecision), QStringLiteral("Tiny volume steps"));
    QCOMPARE(CoachTip::titleOf(Kind::BrightnessPrecision), QStringLiteral("Tiny brightness steps"));
    QCOMPARE(CoachTip::titleOf(Kind::MediaKeys), QStringLiteral("Media keys are global"));
}

void TestCoachTip::allKindsListsTheFourInOrder()
{
    QCOMPARE(CoachTip::allKinds(), (QList<Kind>{Kind::ScreenshotToolbar, Kind::VolumePrecision,
                                                Kind::BrightnessPrecision, Kind::MediaKeys}));
}

void TestCoachTip::eachFamilyGetsTipsNamingItsOwnBindings_data()
{
    QTest::addColumn<FakeDesktopKeySettings>("keys");
    // Empty: the desktop has nothing the tip could name, so there is no tip.
    QTest::addColumn<QString>("screenshot");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QString>("brightness");
    QTest::addColumn<QString>("media");

    const QString media =
        QStringLiteral("Play/pause and skip usually work even when the player is in the "
                       "background.");
    QTest::addRow("GNOME")
        << FakeDesktopKeySettings::gnome()
        << QStringLiteral("Print lets you pick a region to capture; Alt+Print captures the "
                          "active window.")
        << QStringLiteral("Shift+Volume Up and Shift+Volume Down change the volume in smaller "
                          "steps.")
        << QString() << media;
    QTest::addRow("Cinnamon") << FakeDesktopKeySettings::cinnamon()
                              << QStringLiteral("Shift+Print lets you pick a region to capture; "
                                                "Alt+Print captures the active window.")
                              << QString() << QString() << media;
    QTest::addRow("MATE") << FakeDesktopKeySettings::mate()
                          << QStringLiteral("Alt+Print captures just the active window.")
                          << QString() << QString() << media;
    QTest::addRow("KDE")
        << FakeDesktopKeySettings::kde()
        << QStringLiteral("Super+Shift+Print lets you pick a region to capture; Super+Print "
                          "captures the active window.")
        << QStringLiteral("Shift+Volume Up and Shift+Volume Down change the volume in smaller "
                          "steps.")
        << QStringLiteral("Shift+Brightness Up and Shift+Brightness Down change the brightness "
                          "in smaller steps.")
        << media;
    QTest::addRow("Xfce") << FakeDesktopKeySettings::xfce()
                          << QStringLiteral("Shift+Print lets you pick a region to capture; "
                                            "Alt+Print captures the active window.")
                          << QString() << QString() << QString();
    QTest::addRow("none") << FakeDesktopKeySettings() << QString() << QString() << QString()
                          << QString();
}

void TestCoachTip::eachFamilyGetsTipsNamingItsOwnBindings()
{
    QFETCH(FakeDesktopKeySettings, keys);
    QFETCH(QString, screenshot);
    QFETCH(QString, volume);
    QFETCH(QString, brightness);
    QFETCH(QString, media);
    const QList<std::pair<Kind, QString>> cases{
        {Kind::ScreenshotToolbar, screenshot},
        {Kind::VolumePrecision, volume},
        {Kind::BrightnessPrecision, brightness},
        {Kind::MediaKeys, media},
    };
    for (const auto& [kind, message] : cases) {
        const std::optional<CoachTip> tip = CoachTip::compose(kind, keys);
        if (message.isEmpty()) {
            QVERIFY2(!tip, qPrintable(CoachTip::idOf(kind) + QLatin1String(": ") +
                                      (tip ? tip->message : QString())));
            continue;
        }
        QVERIFY2(tip, qPrintable(CoachTip::idOf(kind)));
        QCOMPARE(tip->id, CoachTip::idOf(kind));
        QCOMPARE(tip->title, CoachTip::titleOf(kind));
        QCOMPARE(tip->message, message);
    }
}

void TestCoachTip::oneDirectionAloneIsNamedAlone_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("action");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("message");

    QTest::addRow("volume up") << int(Kind::VolumePrecision) << int(Action::VolumeUpPrecise)
                               << QStringLiteral("Volume Up")
                               << QStringLiteral("Shift+Volume Up raises the volume in a smaller "
                                                 "step.");
    QTest::addRow("volume down") << int(Kind::VolumePrecision) << int(Action::VolumeDownPrecise)
                                 << QStringLiteral("Volume Down")
                                 << QStringLiteral("Shift+Volume Down lowers the volume in a "
                                                   "smaller step.");
    QTest::addRow("brightness up")
        << int(Kind::BrightnessPrecision) << int(Action::BrightnessUpPrecise)
        << QStringLiteral("Brightness Up")
        << QStringLiteral("Shift+Brightness Up raises the brightness in a smaller step.");
    QTest::addRow("brightness down")
        << int(Kind::BrightnessPrecision) << int(Action::BrightnessDownPrecise)
        << QStringLiteral("Brightness Down")
        << QStringLiteral("Shift+Brightness Down lowers the brightness in a smaller step.");
}

void TestCoachTip::oneDirectionAloneIsNamedAlone()
{
    QFETCH(int, kind);
    QFETCH(int, action);
    QFETCH(QString, key);
    QFETCH(QString, message);
    FakeDesktopKeySettings keys;
    keys.bind(Action(action), DesktopKeyBinding::Shift, key);
    const std::optional<CoachTip> tip = CoachTip::compose(Kind(kind), keys);
    QVERIFY(tip);
    QCOMPARE(tip->message, message);
}

void TestCoachTip::screenshotTipNamesWhatIsBound_data()
{
    QTest::addColumn<QList<DesktopKeyBinding>>("region");
    QTest::addColumn<QList<DesktopKeyBinding>>("window");
    QTest::addColumn<QString>("message");

    const DesktopKeyBinding shiftPrint{DesktopKeyBinding::Shift, QStringLiteral("Print")};
    const DesktopKeyBinding ctrlShiftPrint{DesktopKeyBinding::Ctrl | DesktopKeyBinding::Shift,
                                           QStringLiteral("Print")};
    const DesktopKeyBinding superR{DesktopKeyBinding::Super, QStringLiteral("R")};
    QTest::addRow("region only") << QList<DesktopKeyBinding>{shiftPrint}
                                 << QList<DesktopKeyBinding>()
                                 << QStringLiteral("Shift+Print lets you pick a region of the "
                                                   "screen to capture.");
    QTest::addRow("window only") << QList<DesktopKeyBinding>() << QList<DesktopKeyBinding>{superR}
                                 << QStringLiteral("Super+R captures just the active window.");
    QTest::addRow("the first of several")
        << QList<DesktopKeyBinding>{ctrlShiftPrint, shiftPrint} << QList<DesktopKeyBinding>()
        << QStringLiteral("Ctrl+Shift+Print lets you pick a region of the screen to capture.");
}

void TestCoachTip::screenshotTipNamesWhatIsBound()
{
    QFETCH(QList<DesktopKeyBinding>, region);
    QFETCH(QList<DesktopKeyBinding>, window);
    QFETCH(QString, message);
    FakeDesktopKeySettings keys;
    if (!region.isEmpty())
        keys.bound.insert(Action::ScreenshotRegion, region);
    if (!window.isEmpty())
        keys.bound.insert(Action::ScreenshotWindow, window);
    const std::optional<CoachTip> tip = CoachTip::compose(Kind::ScreenshotToolbar, keys);
    QVERIFY(tip);
    QCOMPARE(tip->message, message);
}

void TestCoachTip::anyOneMediaKeyMakesThePlayerKeysGlobal()
{
    for (const Action action : {Action::MediaPlay, Action::MediaNext, Action::MediaPrevious}) {
        FakeDesktopKeySettings keys;
        keys.bind(action, 0, QStringLiteral("Play"));
        QVERIFY(CoachTip::compose(Kind::MediaKeys, keys));
    }
    // Bindings of other actions say nothing about the media keys.
    FakeDesktopKeySettings others = FakeDesktopKeySettings::kde();
    others.bound.remove(Action::MediaPlay);
    others.bound.remove(Action::MediaNext);
    others.bound.remove(Action::MediaPrevious);
    QVERIFY(!CoachTip::compose(Kind::MediaKeys, others));
}

void TestCoachTip::noTipSpeaksAnotherSystemsLanguage()
{
    const QStringList banned{
        QStringLiteral("Mac"),
        QStringLiteral("macOS"),
        QStringLiteral("Finder"),
        QStringLiteral("Option"),
        QStringLiteral("Cmd"),
        QStringLiteral("System Settings"),
        QStringLiteral("Notes or Stickies"),
        QStringLiteral("menu bar icon"),
    };
    for (const FakeDesktopKeySettings& keys :
         {FakeDesktopKeySettings::gnome(), FakeDesktopKeySettings::cinnamon(),
          FakeDesktopKeySettings::mate(), FakeDesktopKeySettings::kde(),
          FakeDesktopKeySettings::xfce()}) {
        for (const Kind kind : CoachTip::allKinds()) {
            const std::optional<CoachTip> tip = CoachTip::compose(kind, keys);
            if (!tip)
                continue;
            for (const QString& word : banned) {
                QVERIFY2(!tip->title.contains(word) && !tip->message.contains(word),
                         qPrintable(tip->title + QLatin1String(": ") + tip->message));
            }
        }
    }
}

void TestCoachTip::equalityAndHashingCoverEveryField()
{
    const CoachTip tip = *CoachTip::compose(Kind::MediaKeys, FakeDesktopKeySettings::gnome());
    CoachTip otherTitle = tip;
    otherTitle.title += QLatin1Char('!');
    CoachTip otherMessage = tip;
    otherMessage.message.clear();
    CoachTip otherId = tip;
    otherId.id = QStringLiteral("media");

    QCOMPARE(tip, *CoachTip::compose(Kind::MediaKeys, FakeDesktopKeySettings::cinnamon()));
    QVERIFY(tip != otherTitle);
    QVERIFY(tip != otherMessage);
    QVERIFY(tip != otherId);
    QCOMPARE(qHash(tip), qHash(*CoachTip::compose(Kind::MediaKeys, FakeDesktopKeySettings::kde())));

    const QSet<CoachTip> set{tip, tip, otherTitle, otherMessage, otherId};
    QCOMPARE(set.size(), 4);
}

QTEST_APPLESS_MAIN(TestCoachTip)
#include "tst_CoachTip.moc"
