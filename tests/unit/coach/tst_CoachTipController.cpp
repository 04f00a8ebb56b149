// SPDX-License-Identifier: MIT
#include "FakeClock.h"
#include "FakeCoachTipPresenter.h"
#include "FakeDesktopKeySettings.h"
#include "FakeSystemKeyMonitor.h"
#include "ManualScheduler.h"
#include "coach/CoachTipController.h"
#include "settings/DefaultsStore.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Tessaline;
using Tessaline::Testing::FakeClock;
using Tessaline::Testing::FakeCoachTipPresenter;
using Tessaline::Testing::FakeDesktopKeySettings;
using Tessaline::Testing::FakeSystemKeyMonitor;
using Tessaline::Testing::ManualScheduler;

namespace {

constexpr quint64 kCommand = SystemKeyEvent::Command;
constexpr quint64 kShift = SystemKeyEvent::Shift;
constexpr quint64 kControl = SystemKeyEvent::Control;
constexpr quint64 kOption = SystemKeyEvent::Option;

SystemKeyEvent keyDown(quint64 flags, const char* characters, const char* keyName = "")
{
    return SystemKeyEvent::keyDown(
        flags, characters ? std::optional<QString>(QString::fromUtf8(characters)) : std::nullopt,
        QString::fromUtf8(keyName));
}

// The Print key as the keyboard reports it: no characters, whatever modifiers are held.
SystemKeyEvent printDown(quint64 flags = 0)
{
    return keyDown(flags, nullptr, "Print");
}

SystemKeyEvent auxDown(int keyType)
{
    return SystemKeyEvent::auxControlButton(keyType, SystemKeyEvent::kKeyStateDown);
}

// Everything a controller needs, wired to test doubles and a private defaults file. The
// desktop binds everything a tip can name unless a test says otherwise.
struct Rig
{
    explicit Rig(const QString& defaultsPath)
        : defaults(defaultsPath), keys(FakeDesktopKeySettings::kde()),
          controller(std::make_unique<CoachTipController>(defaults, clock, scheduler, monitor,
                                                          presenter, keys))
    {
        controller->start();
    }

    /// Delivers the event and lets the main thread route it.
    void press(const SystemKeyEvent& event)
    {
        QVERIFY(monitor.deliver(event));
        scheduler.advance(0);
    }

    QStringList shown() const { return presenter.shownTipIds(); }

    DefaultsStore defaults;
    FakeClock clock;
    ManualScheduler scheduler;
    FakeSystemKeyMonitor monitor;
    FakeCoachTipPresenter presenter;
    FakeDesktopKeySettings keys;
    std::unique_ptr<CoachTipController> controller;
};

void pressButton(const std::function<void()>& callback)
{
    // Copied first: the callback may change the presenter's list that holds it.
    const std::function<void()> copy = callback;
    copy();
}

} // namespace

class TestCoachTipController : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void startInstallsTheMonitorOnce();
    void startRetriesWhenTheMonitorIsUnavailable();
    void stopRemovesTheMonitorAndThePanel();
    void eventsAreRoutedLaterOnTheMainThread();
    void queuedEventsAreDroppedWithTheController();

    void eventsChooseTheirTip_data();
    void eventsChooseTheirTip();
    void onlyTheUpperSixteenBitsOfTheLowWordAreTheKeyType();

    void tipIsSuppressedUntilExactlyEightHoursLater();
    void eachTipHasItsOwnClock();
    void keyUpAndRepeatsNeverShowATip();
    void shownTimeIsStoredBeforeThePanelAppears();
    void zeroOrMissingShownTimeMeansNeverShown();

    void eachFamilyShowsOnlyTheTipsItHasBindingsFor_data();
    void eachFamilyShowsOnlyTheTipsItHasBindingsFor();
    void bindingsAreReadAtTheMomentTheTipShows();
    void removedBindingShowsNothingAndRecordsNothing();
    void suppressedTipsDoNotReadTheSettings();

    void notNowClosesThePanelOnly();
    void dontShowAgainIsRememberedAcrossRestarts();
    void dismissedValueOfAnotherTypeDoesNotCount();

    void panelClosesAfterNineSeconds();
    void replacementKeepsTheNewTipItsFullNineSeconds();
    void earlierTimerDoesNotCloseALaterTipAfterDismissal();
    void shownTipIdIsPublished();

    void panelSitsInTheBottomRightCorner_data();
    void panelSitsInTheBottomRightCorner();
    void presenterReceivesTheCornerFrame();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Rig> m_rig;
    QString defaultsPath() const { return m_dir->filePath(QStringLiteral("defaults.json")); }
};

void TestCoachTipController::init()
{
    m_rig.reset();
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_rig = std::make_unique<Rig>(defaultsPath());
}

void TestCoachTipController::startInstallsTheMonitorOnce()
{
    Rig& rig = *m_rig;
    QCOMPARE(rig.monitor.starts, 1);
    QVERIFY(rig.controller->isMonitoring());
    rig.controller->start();
    QCOMPARE(rig.monitor.starts, 1);
    QVERIFY(rig.monitor.isRunning());
}

void TestCoachTipController::startRetriesWhenTheMonitorIsUnavailable()
{
    DefaultsStore defaults(m_dir->filePath(QStringLiteral("other.json")));
    FakeClock clock;
    ManualScheduler scheduler;
    FakeSystemKeyMonitor monitor;
    FakeCoachTipPresenter presenter;
    FakeDesktopKeySettings keys;
    monitor.available = false;
    monitor.reason = QStringLiteral("Coach tips are off: no keyboard was found.");
    CoachTipController controller(defaults, clock, scheduler, monitor, presenter, keys);
    QSignalSpy monitoringSpy(&controller, &CoachTipController::monitoringChanged);
    QSignalSpy reasonSpy(&controller, &CoachTipController::unavailableReasonChanged);

    controller.start();
    QVERIFY(!controller.isMonitoring());
    QCOMPARE(monitoringSpy.count(), 0);
    // The monitor's reason is kept for the settings window.
    QCOMPARE(controller.unavailableReason(), monitor.reason);
    QCOMPARE(reasonSpy.count(), 1);

    monitor.available = true;
    controller.start();
    QCOMPARE(monitor.starts, 2);
    QVERIFY(controller.isMonitoring());
    QCOMPARE(monitoringSpy.count(), 1);
    QCOMPARE(monitoringSpy.at(0).at(0).toBool(), true);
    QVERIFY(controller.unavailableReason().isEmpty());
    QCOMPARE(reasonSpy.count(), 2);
}

void TestCoachTipController::stopRemovesTheMonitorAndThePanel()
{
    Rig& rig = *m_rig;
    QSignalSpy monitoringSpy(rig.controller.get(), &CoachTipController::monitoringChanged);
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    QCOMPARE(rig.presenter.visiblePanels().size(), 1);

    rig.controller->stop();
    QCOMPARE(rig.monitor.stops, 1);
    QVERIFY(!rig.monitor.isRunning());
    QVERIFY(!rig.controller->isMonitoring());
    QVERIFY(rig.presenter.visiblePanels().isEmpty());
    QVERIFY(!rig.controller->panel().has_value());
    QCOMPARE(monitoringSpy.count(), 1);

    // A second stop has nothing left to remove.
    rig.controller->stop();
    QCOMPARE(rig.monitor.stops, 1);

    // Started again, the monitor is installed anew and tips show again.
    rig.controller->start();
    QCOMPARE(rig.monitor.starts, 2);
    rig.press(auxDown(SystemKeyEvent::Play));
    QCOMPARE(rig.shown(),
             (QStringList{QStringLiteral("volume-precision"), QStringLiteral("media-keys")}));
}

void TestCoachTipController::eventsAreRoutedLaterOnTheMainThread()
{
    Rig& rig = *m_rig;
    QVERIFY(rig.monitor.deliver(auxDown(SystemKeyEvent::SoundUp)));
    // Nothing is decided inside the monitor's handler: not even the shown time is written.
    QVERIFY(rig.presenter.panels.isEmpty());
    QVERIFY(!rig.defaults.contains(
        CoachTipController::lastShownKey(QStringLiteral("volume-precision"))));
    QCOMPARE(rig.scheduler.pendingCount(), 1);

    rig.scheduler.advance(0);
    QCOMPARE(rig.shown(), QStringList{QStringLiteral("volume-precision")});
}

void TestCoachTipController::queuedEventsAreDroppedWithTheController()
{
    Rig& rig = *m_rig;
    const SystemKeyMonitor::Handler handler = rig.monitor.handler;
    QVERIFY(rig.monitor.deliver(auxDown(SystemKeyEvent::SoundUp)));
    rig.controller.reset();
    // The controller took its monitor down when it went.
    QVERIFY(!rig.monitor.isRunning());
    rig.scheduler.advance(10'000);
    QVERIFY(rig.presenter.panels.isEmpty());

    // A handler kept by a careless monitor finds the controller gone and does nothing.
    handler(auxDown(SystemKeyEvent::Play));
    rig.scheduler.advance(0);
    QVERIFY(rig.presenter.panels.isEmpty());
}

void TestCoachTipController::eventsChooseTheirTip_data()
{
    QTest::addColumn<SystemKeyEvent>("event");
    QTest::addColumn<QString>("tipId"); // empty: no tip

    const QString screenshot = QStringLiteral("screenshot-toolbar");
    const QString volume = QStringLiteral("volume-precision");
    const QString brightness = QStringLiteral("brightness-precision");
    const QString media = QStringLiteral("media-keys");

    // The Print key with any modifiers; the old screenshot chords are ordinary keys here.
    QTest::addRow("print") << printDown() << screenshot;
    QTest::addRow("shift-print") << printDown(kShift) << screenshot;
    QTest::addRow("alt-print") << printDown(kOption) << screenshot;
    QTest::addRow("super-shift-print") << printDown(kCommand | kShift) << screenshot;
    QTest::addRow("control-alt-shift-super-print")
        << printDown(kControl | kOption | kShift | kCommand) << screenshot;
    QTest::addRow("super-shift-3") << keyDown(kCommand | kShift, "3", "3") << QString();
    QTest::addRow("super-shift-4") << keyDown(kCommand | kShift, "4", "4") << QString();
    QTest::addRow("super-shift-5") << keyDown(kCommand | kShift, "5", "5") << QString();
    QTest::addRow("key named print in lower case") << keyDown(0, nullptr, "print") << QString();
    QTest::addRow("sys-req") << keyDown(kOption, nullptr, "Sys_Req") << QString();
    QTest::addRow("p") << keyDown(kShift, "p", "p") << QString();
    QTest::addRow("no key name") << keyDown(kCommand | kShift, nullptr, "") << QString();

    QTest::addRow("sound up") << auxDown(SystemKeyEvent::SoundUp) << volume;
    QTest::addRow("sound down") << auxDown(SystemKeyEvent::SoundDown) << volume;
    QTest::addRow("brightness up") << auxDown(SystemKeyEvent::BrightnessUp) << brightness;
    QTest::addRow("brightness down") << auxDown(SystemKeyEvent::BrightnessDown) << brightness;
    QTest::addRow("play") << auxDown(SystemKeyEvent::Play) << media;
    QTest::addRow("next") << auxDown(SystemKeyEvent::Next) << media;
    QTest::addRow("previous") << auxDown(SystemKeyEvent::Previous) << media;
    QTest::addRow("mute") << auxDown(SystemKeyEvent::Mute) << QString();
    for (int keyType : {4, 5, 6, 8, 10, 15, 19, 20, 0x7FFF, 0xFFFF})
        QTest::addRow("key type %d", keyType) << auxDown(keyType) << QString();

    // Modifier flags on a system-defined event are not examined.
    SystemKeyEvent withModifiers = auxDown(SystemKeyEvent::SoundUp);
    withModifiers.modifierFlags = kOption | kShift;
    QTest::addRow("sound up with option-shift") << withModifiers << volume;

    QTest::addRow("sound up, other subtype")
        << SystemKeyEvent::systemDefined(7, auxDown(SystemKeyEvent::SoundUp).data1) << QString();
    QTest::addRow("sound up, subtype 0")
        << SystemKeyEvent::systemDefined(0, auxDown(SystemKeyEvent::SoundUp).data1) << QString();
    QTest::addRow("sound up released")
        << SystemKeyEvent::auxControlButton(SystemKeyEvent::SoundUp, SystemKeyEvent::kKeyStateUp)
        << QString();
    QTest::addRow("play, state 0")
        << SystemKeyEvent::auxControlButton(SystemKeyEvent::Play, 0) << QString();
    QTest::addRow("play, state 0x0C")
        << SystemKeyEvent::auxControlButton(SystemKeyEvent::Play, 0x0C) << QString();

    // A system-defined event is routed by its type alone, a key-down by its own fields.
    SystemKeyEvent keyDownWithData = keyDown(0, "a");
    keyDownWithData.subtype = 8;
    keyDownWithData.data1 = auxDown(SystemKeyEvent::SoundUp).data1;
    QTest::addRow("key-down carrying aux data") << keyDownWithData << QString();
    SystemKeyEvent systemWithKeyName = SystemKeyEvent::systemDefined(0, 0);
    systemWithKeyName.keyName = QStringLiteral("Print");
    QTest::addRow("system-defined carrying a key name") << systemWithKeyName << QString();
}

void TestCoachTipController::eventsChooseTheirTip()
{
    QFETCH(SystemKeyEvent, event);
    QFETCH(QString, tipId);
    Rig& rig = *m_rig;
    rig.press(event);
    if (tipId.isEmpty()) {
        QVERIFY(rig.presenter.panels.isEmpty());
        QVERIFY(!rig.controller->panel().has_value());
        return;
    }
    QCOMPARE(rig.shown(), QStringList{tipId});
    const std::optional<CoachTip> expected = [&]() -> std::optional<CoachTip> {
        for (const CoachTip::Kind kind : CoachTip::allKinds()) {
            if (CoachTip::idOf(kind) == tipId)
                return CoachTip::compose(kind, rig.keys);
        }
        return std::nullopt;
    }();
    QVERIFY(expected);
    QCOMPARE(rig.presenter.panels.first().tip, *expected);
    QCOMPARE(rig.controller->shownTipId(), tipId);
}

void TestCoachTipController::onlyTheUpperSixteenBitsOfTheLowWordAreTheKeyType()
{
    Rig& rig = *m_rig;
    // data1 is read as a 32-bit value: bits above 31 do not change the key type.
    SystemKeyEvent event = auxDown(SystemKeyEvent::BrightnessUp);
    event.data1 |= qint64(1) << 40;
    rig.press(event);
    // The low byte (the repeat flag and friends) does not change the key state either.
    SystemKeyEvent withLowBits = auxDown(SystemKeyEvent::Next);
    withLowBits.data1 |= 0xFF;
    rig.press(withLowBits);
    QCOMPARE(rig.shown(),
             (QStringList{QStringLiteral("brightness-precision"), QStringLiteral("media-keys")}));
}

void TestCoachTipController::tipIsSuppressedUntilExactlyEightHoursLater()
{
    Rig& rig = *m_rig;
    const double start = rig.clock.seconds;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    QCOMPARE(rig.shown().size(), 1);

    rig.clock.seconds = start + 28799.9;
    rig.press(auxDown(SystemKeyEvent::SoundDown));
    QCOMPARE(rig.shown().size(), 1);
    // A suppressed tip does not move its clock.
    QCOMPARE(rig.defaults.doubleValue(
                 CoachTipController::lastShownKey(QStringLiteral("volume-precision"))),
             std::optional<double>(start));

    rig.clock.seconds = start + 28800.0;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    QCOMPARE(rig.shown(),
             (QStringList{QStringLiteral("volume-precision"), QStringLiteral("volume-precision")}));
    QCOMPARE(rig.defaults.doubleValue(
                 CoachTipController::lastShownKey(QStringLiteral("volume-precision"))),
             std::optional<double>(start + 28800.0));
}

void TestCoachTipController::eachTipHasItsOwnClock()
{
    Rig& rig = *m_rig;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    rig.clock.seconds += 60;
    rig.press(auxDown(SystemKeyEvent::BrightnessUp));
    rig.clock.seconds += 60;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    rig.clock.seconds += 3600;
    rig.press(auxDown(SystemKeyEvent::BrightnessDown));
    rig.press(printDown());
    rig.press(printDown(kShift));
    QCOMPARE(rig.shown(), (QStringList{QStringLiteral("volume-precision"),
                                       QStringLiteral("brightness-precision"),
                                       QStringLiteral("screenshot-toolbar")}));
}

void TestCoachTipController::keyUpAndRepeatsNeverShowATip()
{
    Rig& rig = *m_rig;
    // Releases alone, long apart, never show anything.
    for (int i = 0; i < 3; ++i) {
        rig.press(
            SystemKeyEvent::auxControlButton(SystemKeyEvent::SoundUp, SystemKeyEvent::kKeyStateUp));
        rig.press(SystemKeyEvent::auxControlButton(SystemKeyEvent::Play,
                                                   SystemKeyEvent::kKeyStateUp, true));
        rig.clock.seconds += 30000;
    }
    QVERIFY(rig.presenter.panels.isEmpty());

    // Holding the key: one press, then repeats a moment apart, then the release.
    rig.press(auxDown(SystemKeyEvent::BrightnessUp));
    for (int i = 0; i < 20; ++i) {
        rig.clock.seconds += 0.05;
        rig.press(SystemKeyEvent::auxControlButton(SystemKeyEvent::BrightnessUp,
                                                   SystemKeyEvent::kKeyStateDown, true));
    }
    rig.press(SystemKeyEvent::auxControlButton(SystemKeyEvent::BrightnessUp,
                                               SystemKeyEvent::kKeyStateUp));
    QCOMPARE(rig.shown(), QStringList{QStringLiteral("brightness-precision")});
}

void TestCoachTipController::shownTimeIsStoredBeforeThePanelAppears()
{
    Rig& rig = *m_rig;
    std::optional<double> storedWhenShown;
    rig.presenter.onShow = [&](const CoachTip& tip) {
        storedWhenShown = rig.defaults.doubleValue(CoachTipController::lastShownKey(tip.id));
    };
    rig.clock.seconds = 1'800'000'000.25;
    rig.press(auxDown(SystemKeyEvent::Previous));
    QCOMPARE(storedWhenShown, std::optional<double>(1'800'000'000.25));
    QCOMPARE(rig.defaults.type(CoachTipController::lastShownKey(QStringLiteral("media-keys"))),
             DefaultsStore::ValueType::Double);

    // Closed at once, the tip still waits its eight hours.
    pressButton(rig.presenter.panels.first().onDismiss);
    rig.clock.seconds += 10;
    rig.press(auxDown(SystemKeyEvent::Next));
    QCOMPARE(rig.shown().size(), 1);
}

void TestCoachTipController::zeroOrMissingShownTimeMeansNeverShown()
{
    Rig& rig = *m_rig;
    rig.defaults.setDouble(CoachTipController::lastShownKey(QStringLiteral("volume-precision")),
                           0.0);
    rig.press(auxDown(SystemKeyEvent::SoundDown));
    QCOMPARE(rig.shown(), QStringList{QStringLiteral("volume-precision")});

    // A time in the future counts as "less than eight hours ago".
    rig.defaults.setDouble(CoachTipController::lastShownKey(QStringLiteral("media-keys")),
                           rig.clock.seconds + 100);
    rig.press(auxDown(SystemKeyEvent::Play));
    QCOMPARE(rig.shown(), QStringList{QStringLiteral("volume-precision")});
}

void TestCoachTipController::eachFamilyShowsOnlyTheTipsItHasBindingsFor_data()
{
    QTest::addColumn<FakeDesktopKeySettings>("keys");
    QTest::addColumn<QStringList>("shown");

    const QString screenshot = QStringLiteral("screenshot-toolbar");
    const QString volume = QStringLiteral("volume-precision");
    const QString brightness = QStringLiteral("brightness-precision");
    const QString media = QStringLiteral("media-keys");
    QTest::addRow("GNOME") << FakeDesktopKeySettings::gnome()
                           << QStringList{screenshot, volume, media};
    QTest::addRow("Cinnamon") << FakeDesktopKeySettings::cinnamon()
                              << QStringList{screenshot, media};
    QTest::addRow("MATE") << FakeDesktopKeySettings::mate() << QStringList{screenshot, media};
    QTest::addRow("KDE") << FakeDesktopKeySettings::kde()
                         << QStringList{screenshot, volume, brightness, media};
    QTest::addRow("Xfce") << FakeDesktopKeySettings::xfce() << QStringList{screenshot};
    QTest::addRow("none") << FakeDesktopKeySettings() << QStringList();
}

void TestCoachTipController::eachFamilyShowsOnlyTheTipsItHasBindingsFor()
{
    QFETCH(FakeDesktopKeySettings, keys);
    QFETCH(QStringList, shown);
    DefaultsStore defaults(m_dir->filePath(QStringLiteral("family.json")));
    FakeClock clock;
    ManualScheduler scheduler;
    FakeSystemKeyMonitor monitor;
    FakeCoachTipPresenter presenter;
    CoachTipController controller(defaults, clock, scheduler, monitor, presenter, keys);
    controller.start();

    for (const SystemKeyEvent& event :
         {printDown(kShift), auxDown(SystemKeyEvent::SoundUp),
          auxDown(SystemKeyEvent::BrightnessDown), auxDown(SystemKeyEvent::Play)}) {
        QVERIFY(monitor.deliver(event));
        scheduler.advance(0);
    }
    QCOMPARE(presenter.shownTipIds(), shown);
    // Only the tips that showed have a shown time; the others may still show once the desktop
    // gets a binding for them.
    for (const CoachTip::Kind kind : CoachTip::allKinds()) {
        const QString id = CoachTip::idOf(kind);
        QCOMPARE(defaults.contains(CoachTipController::lastShownKey(id)), shown.contains(id));
    }
}

void TestCoachTipController::bindingsAreReadAtTheMomentTheTipShows()
{
    Rig& rig = *m_rig;
    rig.keys = FakeDesktopKeySettings::gnome();
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    QCOMPARE(rig.presenter.panels.last().tip.message,
             QStringLiteral("Shift+Volume Up and Shift+Volume Down change the volume in smaller "
                            "steps."));

    // The user rebinds the smaller steps; eight hours later the tip names the new keys.
    rig.keys.bound[DesktopKeySettings::Action::VolumeUpPrecise] = {
        DesktopKeyBinding{DesktopKeyBinding::Super, QStringLiteral("Volume Up")}};
    rig.keys.bound.remove(DesktopKeySettings::Action::VolumeDownPrecise);
    rig.clock.seconds += CoachTipController::minimumRepeatInterval;
    rig.press(auxDown(SystemKeyEvent::SoundDown));
    QCOMPARE(rig.shown().size(), 2);
    QCOMPARE(rig.presenter.panels.last().tip.message,
             QStringLiteral("Super+Volume Up raises the volume in a smaller step."));
    QCOMPARE(rig.presenter.panels.last().tip.title, QStringLiteral("Tiny volume steps"));
}

void TestCoachTipController::removedBindingShowsNothingAndRecordsNothing()
{
    Rig& rig = *m_rig;
    const QString key = CoachTipController::lastShownKey(QStringLiteral("screenshot-toolbar"));
    rig.keys.bound.remove(DesktopKeySettings::Action::ScreenshotRegion);
    rig.keys.bound.remove(DesktopKeySettings::Action::ScreenshotWindow);
    rig.press(printDown());
    QVERIFY(rig.presenter.panels.isEmpty());
    QVERIFY(!rig.defaults.contains(key));

    // Bound again a minute later, the tip shows at the next press: no eight-hour wait was
    // started by the press that showed nothing.
    rig.keys.bind(DesktopKeySettings::Action::ScreenshotWindow, DesktopKeyBinding::Alt,
                  QStringLiteral("Print"));
    rig.clock.seconds += 60;
    rig.press(printDown(kOption));
    QCOMPARE(rig.shown(), QStringList{QStringLiteral("screenshot-toolbar")});
    QCOMPARE(rig.presenter.panels.last().tip.message,
             QStringLiteral("Alt+Print captures just the active window."));
    QCOMPARE(rig.defaults.doubleValue(key), std::optional<double>(rig.clock.seconds));
}

void TestCoachTipController::suppressedTipsDoNotReadTheSettings()
{
    Rig& rig = *m_rig;
    rig.press(auxDown(SystemKeyEvent::Play));
    QVERIFY(rig.keys.reads > 0);
    rig.keys.reads = 0;
    // Within eight hours, and after "Don't show again", nothing is read at all.
    rig.press(auxDown(SystemKeyEvent::Next));
    pressButton(rig.presenter.panels.first().onNeverShow);
    rig.clock.seconds += 86400;
    rig.press(auxDown(SystemKeyEvent::Previous));
    QCOMPARE(rig.keys.reads, 0);
    QCOMPARE(rig.shown().size(), 1);
}

void TestCoachTipController::notNowClosesThePanelOnly()
{
    Rig& rig = *m_rig;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    pressButton(rig.presenter.panels.first().onDismiss);
    QVERIFY(rig.presenter.visiblePanels().isEmpty());
    QVERIFY(!rig.controller->panel().has_value());
    QVERIFY(!rig.defaults.contains(
        CoachTipController::dismissedKey(QStringLiteral("volume-precision"))));

    rig.clock.seconds += 28800;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    QCOMPARE(rig.shown().size(), 2);
}

void TestCoachTipController::dontShowAgainIsRememberedAcrossRestarts()
{
    {
        Rig& rig = *m_rig;
        rig.press(auxDown(SystemKeyEvent::SoundUp));
        pressButton(rig.presenter.panels.first().onNeverShow);
        QVERIFY(rig.presenter.visiblePanels().isEmpty());
        QVERIFY(!rig.controller->panel().has_value());
        QCOMPARE(
            rig.defaults.type(CoachTipController::dismissedKey(QStringLiteral("volume-precision"))),
            DefaultsStore::ValueType::Bool);
        QCOMPARE(rig.defaults.boolValue(
                     CoachTipController::dismissedKey(QStringLiteral("volume-precision"))),
                 std::optional<bool>(true));
    }
    m_rig.reset();

    // A new process with the same defaults file, a day later.
    Rig rig(defaultsPath());
    rig.clock.seconds += 86400;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    rig.press(auxDown(SystemKeyEvent::SoundDown));
    QVERIFY(rig.presenter.panels.isEmpty());
    // Other tips are not affected.
    rig.press(auxDown(SystemKeyEvent::BrightnessUp));
    QCOMPARE(rig.shown(), QStringList{QStringLiteral("brightness-precision")});
}

void TestCoachTipController::dismissedValueOfAnotherTypeDoesNotCount()
{
    Rig& rig = *m_rig;
    rig.defaults.setString(CoachTipController::dismissedKey(QStringLiteral("media-keys")),
                           QStringLiteral("true"));
    rig.defaults.setBool(CoachTipController::dismissedKey(QStringLiteral("volume-precision")),
                         false);
    rig.press(auxDown(SystemKeyEvent::Play));
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    QCOMPARE(rig.shown(),
             (QStringList{QStringLiteral("media-keys"), QStringLiteral("volume-precision")}));
}

void TestCoachTipController::panelClosesAfterNineSeconds()
{
    Rig& rig = *m_rig;
    rig.press(auxDown(SystemKeyEvent::Play));
    rig.scheduler.advance(8999);
    QCOMPARE(rig.presenter.visiblePanels().size(), 1);
    rig.scheduler.advance(1);
    QVERIFY(rig.presenter.visiblePanels().isEmpty());
    QVERIFY(!rig.controller->panel().has_value());
}

void TestCoachTipController::replacementKeepsTheNewTipItsFullNineSeconds()
{
    Rig& rig = *m_rig;
    rig.press(auxDown(SystemKeyEvent::SoundUp)); // A at 0 ms
    rig.scheduler.advance(3000);
    rig.press(printDown(kShift)); // B at 3000 ms replaces A

    QCOMPARE(rig.presenter.panels.size(), 2);
    QVERIFY(!rig.presenter.panels.at(0).visible);
    QCOMPARE(rig.presenter.visiblePanels().size(), 1);
    QCOMPARE(rig.presenter.visiblePanels().first().tip,
             *CoachTip::compose(CoachTip::Kind::ScreenshotToolbar, rig.keys));

    rig.scheduler.advance(6000); // 9000 ms: A's timer finds another panel
    QCOMPARE(rig.presenter.visiblePanels().size(), 1);
    QCOMPARE(rig.controller->shownTipId(), QStringLiteral("screenshot-toolbar"));
    rig.scheduler.advance(2999); // 11999 ms
    QCOMPARE(rig.presenter.visiblePanels().size(), 1);
    rig.scheduler.advance(1); // 12000 ms: B's own nine seconds are over
    QVERIFY(rig.presenter.visiblePanels().isEmpty());
}

void TestCoachTipController::earlierTimerDoesNotCloseALaterTipAfterDismissal()
{
    Rig& rig = *m_rig;
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    rig.scheduler.advance(1000);
    pressButton(rig.presenter.panels.first().onDismiss);
    rig.scheduler.advance(4000); // 5000 ms
    rig.press(auxDown(SystemKeyEvent::Play));
    rig.scheduler.advance(4000); // 9000 ms: the first tip's timer
    QCOMPARE(rig.presenter.visiblePanels().size(), 1);
    QCOMPARE(rig.presenter.visiblePanels().first().tip.id, QStringLiteral("media-keys"));
    rig.scheduler.advance(5000); // 14000 ms
    QVERIFY(rig.presenter.visiblePanels().isEmpty());
}

void TestCoachTipController::shownTipIdIsPublished()
{
    Rig& rig = *m_rig;
    QSignalSpy idSpy(rig.controller.get(), &CoachTipController::shownTipIdChanged);
    QSignalSpy shownSpy(rig.controller.get(), &CoachTipController::tipShown);
    rig.press(auxDown(SystemKeyEvent::Next));
    rig.press(auxDown(SystemKeyEvent::Next)); // suppressed: nothing published
    rig.scheduler.advance(9000);

    QCOMPARE(shownSpy.count(), 1);
    QCOMPARE(shownSpy.at(0).at(0).toString(), QStringLiteral("media-keys"));
    QCOMPARE(idSpy.count(), 2);
    QCOMPARE(idSpy.at(0).at(0).toString(), QStringLiteral("media-keys"));
    QCOMPARE(idSpy.at(1).at(0).toString(), QString());
    QCOMPARE(rig.controller->shownTipId(), QString());
}

void TestCoachTipController::panelSitsInTheBottomRightCorner_data()
{
    QTest::addColumn<std::optional<QRect>>("screen");
    QTest::addColumn<QRect>("frame");

    QTest::addRow("1280x800") << std::optional<QRect>(QRect(0, 0, 1280, 800))
                              << QRect(898, 646, 360, 132);
    // A top panel of 28 px and a left dock of 64 px.
    QTest::addRow("with panels") << std::optional<QRect>(QRect(64, 28, 1856, 1052))
                                 << QRect(1920 - 22 - 360, 1080 - 22 - 132, 360, 132);
    QTest::addRow("second screen") << std::optional<QRect>(QRect(1920, 0, 2560, 1440))
                                   << QRect(1920 + 2560 - 382, 1440 - 154, 360, 132);
    QTest::addRow("no screen") << std::optional<QRect>() << QRect(1058, 746, 360, 132);
}

void TestCoachTipController::panelSitsInTheBottomRightCorner()
{
    QFETCH(std::optional<QRect>, screen);
    QFETCH(QRect, frame);
    QCOMPARE(CoachTipController::panelFrame(screen), frame);
}

void TestCoachTipController::presenterReceivesTheCornerFrame()
{
    Rig& rig = *m_rig;
    rig.presenter.screen = QRect(0, 0, 1600, 900);
    rig.press(auxDown(SystemKeyEvent::SoundUp));
    QCOMPARE(rig.presenter.panels.first().frame, QRect(1218, 746, 360, 132));

    rig.presenter.screen.reset();
    rig.press(auxDown(SystemKeyEvent::Play));
    QCOMPARE(rig.presenter.panels.last().frame, QRect(1058, 746, 360, 132));
}

QTEST_GUILESS_MAIN(TestCoachTipController)
#include "tst_CoachTipController.moc"
