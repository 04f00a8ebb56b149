// SPDX-License-Identifier: MIT
#include "FakeHotKeyService.h"
#include "ManualScheduler.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/HotkeyRecorder.h"
#include "settings/DefaultsStore.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using Tessaline::DefaultsStore;
using Tessaline::HotkeyKeyEvent;
using Tessaline::HotkeyManager;
using Tessaline::HotkeyRecorder;
using Tessaline::Testing::FakeHotKeyService;
using Tessaline::Testing::ManualScheduler;

namespace {
constexpr quint64 kShift = 0x20000;
constexpr quint64 kControl = 0x40000;
constexpr quint64 kOption = 0x80000;
constexpr quint64 kCommand = 0x100000;
} // namespace

class TestHotkeyRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void disabledFieldReadsClickToRecord();
    void recordingOptionCommandJ();
    void keyWithoutModifierChangesOnlyTheMessage();
    void shiftF5IsRecorded();
    void escapeAloneAsksForAModifierEscapeWithOneIsRecorded();
    void onlyTheFourModifiersAreKept();
    void settersRunInOrderAndRebindTwice();
    void nextChordReplacesTheLast();
    void qtKeyPressesAreForwarded();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<FakeHotKeyService> m_service;
    std::unique_ptr<DefaultsStore> m_defaults;
    ManualScheduler m_scheduler;
    std::unique_ptr<HotkeyManager> m_manager;
    int m_toggles = 0;
};

void TestHotkeyRecorder::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_service = std::make_unique<FakeHotKeyService>();
    HotKey::HotKeysController::setService(m_service.get());
    m_defaults = std::make_unique<DefaultsStore>(m_dir->filePath(QStringLiteral("d.json")));
    m_toggles = 0;
    m_manager = std::make_unique<HotkeyManager>(*m_defaults, m_scheduler, [this] { ++m_toggles; });
}

void TestHotkeyRecorder::cleanup()
{
    m_manager.reset();
    m_defaults.reset();
    HotKey::HotKeysController::setService(nullptr);
    m_service.reset();
    m_dir.reset();
}

void TestHotkeyRecorder::disabledFieldReadsClickToRecord()
{
    HotkeyRecorder recorder(*m_manager);
    QCOMPARE(recorder.displayText(), QStringLiteral("Click to record"));
    m_manager->setEnabled(true);
    QCOMPARE(recorder.displayText(), QStringLiteral("⌃⌥⌘K"));
    m_manager->setEnabled(false);
    QCOMPARE(recorder.displayText(), QStringLiteral("Click to record"));
}

void TestHotkeyRecorder::recordingOptionCommandJ()
{
    HotkeyRecorder recorder(*m_manager);
    QSignalSpy display(&recorder, &HotkeyRecorder::displayTextChanged);
    recorder.capture(HotkeyKeyEvent{38, kOption | kCommand});
    QCOMPARE(recorder.displayText(), QStringLiteral("⌥⌘J"));
    QVERIFY(display.count() >= 1);
    QCOMPARE(m_manager->registrationMessage(),
             std::optional<QString>(QStringLiteral("HUD hotkey set to ⌥⌘J.")));
    QCOMPARE(m_manager->isEnabled(), true);
    QCOMPARE(m_manager->keyCode(), 38u);
    QCOMPARE(m_manager->carbonModifiers(), 2304u);
    QCOMPARE(m_defaults->integerValue(QStringLiteral("Hotkey.keyCode")), std::optional<qint64>(38));
    QCOMPARE(m_defaults->integerValue(QStringLiteral("Hotkey.modifiers")),
             std::optional<qint64>(2304));
    QCOMPARE(m_defaults->boolValue(QStringLiteral("Hotkey.enabled")), std::optional<bool>(true));

    // The recorded chord is the one that is registered.
    QCOMPARE(m_service->press(38, 2304), 1);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 1);
    QCOMPARE(m_service->press(40, 6400), 0);
}

void TestHotkeyRecorder::keyWithoutModifierChangesOnlyTheMessage()
{
    HotkeyRecorder recorder(*m_manager);
    QSignalSpy keyCode(m_manager.get(), &HotkeyManager::keyCodeChanged);
    recorder.capture(HotkeyKeyEvent{38, 0});
    QCOMPARE(
        m_manager->registrationMessage(),
        std::optional<QString>(QStringLiteral("Choose at least one modifier, like Ctrl or Alt.")));
    QCOMPARE(m_manager->keyCode(), 40u);
    QCOMPARE(m_manager->carbonModifiers(), 6400u);
    QCOMPARE(m_manager->isEnabled(), false);
    QCOMPARE(keyCode.count(), 0);
    QVERIFY(!m_defaults->contains(QStringLiteral("Hotkey.keyCode")));
    QVERIFY(!m_defaults->contains(QStringLiteral("Hotkey.enabled")));
    QVERIFY(m_service->registrations.isEmpty());
    QCOMPARE(recorder.displayText(), QStringLiteral("Click to record"));
}

void TestHotkeyRecorder::shiftF5IsRecorded()
{
    HotkeyRecorder recorder(*m_manager);
    recorder.capture(HotkeyKeyEvent{96, kShift});
    QCOMPARE(m_manager->keyCode(), 96u);
    QCOMPARE(m_manager->carbonModifiers(), 512u);
    QCOMPARE(recorder.displayText(), QStringLiteral("⇧Key 96"));
    QCOMPARE(m_manager->registrationMessage(),
             std::optional<QString>(QStringLiteral("HUD hotkey set to ⇧Key 96.")));
}

void TestHotkeyRecorder::escapeAloneAsksForAModifierEscapeWithOneIsRecorded()
{
    HotkeyRecorder recorder(*m_manager);
    recorder.capture(HotkeyKeyEvent{53, 0});
    QCOMPARE(m_manager->registrationMessage(),
             std::optional<QString>(HotkeyManager::chooseModifierMessage()));
    QCOMPARE(m_manager->isEnabled(), false);
    recorder.capture(HotkeyKeyEvent{53, kControl});
    QCOMPARE(recorder.displayText(), QStringLiteral("⌃Esc"));
    QCOMPARE(m_manager->isEnabled(), true);
}

void TestHotkeyRecorder::onlyTheFourModifiersAreKept()
{
    HotkeyRecorder recorder(*m_manager);
    // Caps Lock (0x10000) and fn (0x800000) alone do not count as modifiers.
    recorder.capture(HotkeyKeyEvent{0, 0x10000 | 0x800000});
    QCOMPARE(m_manager->isEnabled(), false);
    recorder.capture(HotkeyKeyEvent{0, 0x10000 | 0x800000 | kControl | kShift});
    QCOMPARE(m_manager->carbonModifiers(), 0x1000u | 0x200u);
    QCOMPARE(recorder.displayText(), QStringLiteral("⌃⇧A"));
}

void TestHotkeyRecorder::settersRunInOrderAndRebindTwice()
{
    QStringList order;
    connect(m_manager.get(), &HotkeyManager::keyCodeChanged, this,
            [&] { order.append(QStringLiteral("keyCode")); });
    connect(m_manager.get(), &HotkeyManager::carbonModifiersChanged, this,
            [&] { order.append(QStringLiteral("modifiers")); });
    connect(m_manager.get(), &HotkeyManager::isEnabledChanged, this, [&] {
        order.append(QStringLiteral("enabled"));
        // The message is set only after enabling.
        QVERIFY(!m_manager->registrationMessage().has_value());
    });
    connect(m_manager.get(), &HotkeyManager::registrationMessageChanged, this,
            [&] { order.append(QStringLiteral("message")); });

    HotkeyRecorder::capture(*m_manager, HotkeyKeyEvent{38, kOption | kCommand});
    QCOMPARE(order, (QStringList{QStringLiteral("keyCode"), QStringLiteral("modifiers"),
                                 QStringLiteral("enabled"), QStringLiteral("message")}));
    // Enabling rebinds, and the capture rebinds once more.
    QCOMPARE(m_service->registrations.size(), 2);
    QCOMPARE(m_service->unregistrations.size(), 1);
    QCOMPARE(m_service->active.size(), std::size_t(1));
    QCOMPARE(m_service->registrations.last().keyCode, 38u);
    QCOMPARE(m_service->registrations.last().modifiers, 2304u);
}

void TestHotkeyRecorder::nextChordReplacesTheLast()
{
    HotkeyRecorder recorder(*m_manager);
    recorder.capture(HotkeyKeyEvent{38, kOption | kCommand});
    recorder.capture(HotkeyKeyEvent{49, kControl});
    QCOMPARE(recorder.displayText(), QStringLiteral("⌃Space"));
    QCOMPARE(m_service->active.size(), std::size_t(1));
    QCOMPARE(m_service->press(38, 2304), 0);
    QCOMPARE(m_service->press(49, 4096), 1);
}

void TestHotkeyRecorder::qtKeyPressesAreForwarded()
{
    HotkeyRecorder recorder(*m_manager);
    // A modifier key pressed alone is not a capture.
    QVERIFY(!recorder.captureQtKey(Qt::Key_Control, Qt::ControlModifier));
    QVERIFY(!m_manager->registrationMessage().has_value());
    // A key without a Carbon code is ignored.
    QVERIFY(!recorder.captureQtKey(Qt::Key_Launch0, Qt::ControlModifier));
    QVERIFY(!m_manager->registrationMessage().has_value());

    QVERIFY(recorder.captureQtKey(Qt::Key_J, Qt::AltModifier | Qt::MetaModifier));
    QCOMPARE(recorder.displayText(), QStringLiteral("⌥⌘J"));
    QVERIFY(recorder.captureQtKey(Qt::Key_F5, Qt::ShiftModifier));
    QCOMPARE(recorder.displayText(), QStringLiteral("⇧Key 96"));
    QVERIFY(recorder.captureQtKey(Qt::Key_J, Qt::NoModifier));
    QCOMPARE(m_manager->registrationMessage(),
             std::optional<QString>(HotkeyManager::chooseModifierMessage()));
    QCOMPARE(recorder.displayText(), QStringLiteral("⇧Key 96"));
}

QTEST_GUILESS_MAIN(TestHotkeyRecorder)
#include "tst_HotkeyRecorder.moc"
