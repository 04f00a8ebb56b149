// SPDX-License-Identifier: MIT
#include "FakeHotKeyService.h"
#include "ManualScheduler.h"
#include "hotkeys/HotkeyManager.h"
#include "settings/DefaultsStore.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using Tessaline::DefaultsStore;
using Tessaline::HotkeyManager;
using Tessaline::KeyNameStyle;
using Tessaline::Testing::FakeHotKeyService;
using Tessaline::Testing::ManualScheduler;

class TestHotkeyManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void firstStartWithEmptyDefaults();
    void storedValuesAreRead();
    void storedKeyCodeOfAnotherTypeIsIgnored_data();
    void storedKeyCodeOfAnotherTypeIsIgnored();
    void enablingRegistersAndPressTogglesDisablingUnregisters();
    void togglesOncePerPressOneTurnLater();
    void noToggleOnceTheManagerIsGone();
    void keyCodeAndModifierSettersWriteButDoNotRebind();
    void rebindUsesTheCurrentCombination();
    void refusedCombinationIsSilent();
    void lateRefusalLeavesTheRefusedStateAndAsksForTheHint();
    void disableFromSettings();
    void publishedChanges();
    void displayText_data();
    void displayText();
    void displayTextInAKeyNameStyle();
    void sessionWithoutGlobalKeys();
    void displayKeyTable_data();
    void displayKeyTable();
    void displayModifiers_data();
    void displayModifiers();
    void carbonModifiersFromFlags_data();
    void carbonModifiersFromFlags();
    void fixedTexts();

private:
    QString defaultsPath() const { return m_dir->filePath(QStringLiteral("defaults.json")); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<FakeHotKeyService> m_service;
    std::unique_ptr<DefaultsStore> m_defaults;
    ManualScheduler m_scheduler;
    int m_toggles = 0;
};

void TestHotkeyManager::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_service = std::make_unique<FakeHotKeyService>();
    HotKey::HotKeysController::setService(m_service.get());
    m_defaults = std::make_unique<DefaultsStore>(defaultsPath());
    m_toggles = 0;
}

void TestHotkeyManager::cleanup()
{
    m_defaults.reset();
    HotKey::HotKeysController::setService(nullptr);
    m_service.reset();
    m_dir.reset();
}

void TestHotkeyManager::firstStartWithEmptyDefaults()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [this] { ++m_toggles; });
    QCOMPARE(manager.isEnabled(), false);
    QCOMPARE(manager.keyCode(), 40u);
    QCOMPARE(manager.carbonModifiers(), 6400u);
    QCOMPARE(manager.displayText(), QStringLiteral("⌃⌥⌘K"));
    QVERIFY(!manager.registrationMessage().has_value());
    QVERIFY(!manager.hotKey());
    QVERIFY(m_service->registrations.isEmpty());
    // Nothing is written by reading.
    QVERIFY(!m_defaults->contains(QStringLiteral("Hotkey.enabled")));

    manager.rebind();
    QVERIFY(m_service->registrations.isEmpty());
    QVERIFY(!manager.hotKey());
}

void TestHotkeyManager::storedValuesAreRead()
{
    m_defaults->setBool(QStringLiteral("Hotkey.enabled"), true);
    m_defaults->setInteger(QStringLiteral("Hotkey.keyCode"), 38);
    m_defaults->setInteger(QStringLiteral("Hotkey.modifiers"), 2304);
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    QCOMPARE(manager.isEnabled(), true);
    QCOMPARE(manager.keyCode(), 38u);
    QCOMPARE(manager.carbonModifiers(), 2304u);
    QCOMPARE(manager.displayText(), QStringLiteral("⌥⌘J"));
    // The initializer registers nothing; the owner rebinds.
    QVERIFY(m_service->registrations.isEmpty());
    manager.rebind();
    QCOMPARE(m_service->registrations.size(), 1);
    QCOMPARE(m_service->registrations.first().keyCode, 38u);
    QCOMPARE(m_service->registrations.first().modifiers, 2304u);
}

void TestHotkeyManager::storedKeyCodeOfAnotherTypeIsIgnored_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addRow("string") << QStringLiteral("string");
    QTest::addRow("double") << QStringLiteral("double");
    QTest::addRow("bool") << QStringLiteral("bool");
}

void TestHotkeyManager::storedKeyCodeOfAnotherTypeIsIgnored()
{
    QFETCH(QString, kind);
    const QString keyCode = QStringLiteral("Hotkey.keyCode");
    const QString modifiers = QStringLiteral("Hotkey.modifiers");
    const QString enabled = QStringLiteral("Hotkey.enabled");
    if (kind == QLatin1String("string")) {
        m_defaults->setString(keyCode, QStringLiteral("38"));
        m_defaults->setString(modifiers, QStringLiteral("256"));
        m_defaults->setString(enabled, QStringLiteral("true"));
    } else if (kind == QLatin1String("double")) {
        m_defaults->setDouble(keyCode, 38.0);
        m_defaults->setDouble(modifiers, 256.0);
    } else {
        m_defaults->setBool(keyCode, true);
        m_defaults->setBool(modifiers, true);
    }
    m_defaults->sync();
    // Read back from the file, as at a real start.
    m_defaults = std::make_unique<DefaultsStore>(defaultsPath());
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    QCOMPARE(manager.keyCode(), 40u);
    QCOMPARE(manager.carbonModifiers(), 6400u);
    QCOMPARE(manager.isEnabled(), false);
}

void TestHotkeyManager::enablingRegistersAndPressTogglesDisablingUnregisters()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [this] { ++m_toggles; });
    manager.setEnabled(true);
    QCOMPARE(m_defaults->boolValue(QStringLiteral("Hotkey.enabled")), std::optional<bool>(true));
    QCOMPARE(m_service->registrations.size(), 1);
    QCOMPARE(m_service->registrations.first().keyCode, 40u);
    QCOMPARE(m_service->registrations.first().modifiers, 6400u);
    QVERIFY(manager.hotKey());
    QCOMPARE(m_service->active.size(), std::size_t(1));
    // The hot key has a key-down handler and no key-up handler.
    QVERIFY(bool(manager.hotKey()->keyDownHandler()));
    QVERIFY(!manager.hotKey()->keyUpHandler());

    QCOMPARE(m_service->press(40, 6400), 1);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 1);
    // A release is not handled.
    QCOMPARE(m_service->press(40, 6400, HotKey::HotKeyEvent::released), 0);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 1);

    manager.setEnabled(false);
    QCOMPARE(m_defaults->boolValue(QStringLiteral("Hotkey.enabled")), std::optional<bool>(false));
    QVERIFY(!manager.hotKey());
    QVERIFY(m_service->active.empty());
    QCOMPARE(m_service->unregistrations.size(), 1);
    QCOMPARE(m_service->press(40, 6400), 0);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 1);
}

void TestHotkeyManager::togglesOncePerPressOneTurnLater()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [this] { ++m_toggles; });
    manager.setEnabled(true);
    m_service->press(40, 6400);
    // The handler defers to the event loop: nothing has happened yet.
    QCOMPARE(m_toggles, 0);
    QCOMPARE(m_scheduler.pendingCount(), 1);
    m_service->press(40, 6400);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 2);
}

void TestHotkeyManager::noToggleOnceTheManagerIsGone()
{
    std::shared_ptr<HotKey::HotKey> kept;
    {
        HotkeyManager manager(*m_defaults, m_scheduler, [this] { ++m_toggles; });
        manager.setEnabled(true);
        kept = manager.hotKey();
        m_service->press(40, 6400); // queued while the manager exists
    }
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 0);
    // Its hot key, kept alive elsewhere, no longer reaches a manager.
    kept->keyDownHandler()();
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 0);
}

void TestHotkeyManager::keyCodeAndModifierSettersWriteButDoNotRebind()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    manager.setEnabled(true);
    QCOMPARE(m_service->registrations.size(), 1);
    manager.setKeyCode(38);
    manager.setCarbonModifiers(2304);
    QCOMPARE(m_defaults->integerValue(QStringLiteral("Hotkey.keyCode")), std::optional<qint64>(38));
    QCOMPARE(m_defaults->integerValue(QStringLiteral("Hotkey.modifiers")),
             std::optional<qint64>(2304));
    QCOMPARE(m_service->registrations.size(), 1);
    QCOMPARE(manager.hotKey()->keyCombo(), HotKey::KeyCombo(40, 6400));
}

void TestHotkeyManager::rebindUsesTheCurrentCombination()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [this] { ++m_toggles; });
    manager.setEnabled(true);
    manager.setKeyCode(38);
    manager.setCarbonModifiers(2304);
    manager.rebind();
    QCOMPARE(m_service->registrations.size(), 2);
    QCOMPARE(m_service->unregistrations.size(), 1);
    QCOMPARE(manager.hotKey()->keyCombo(), HotKey::KeyCombo(38, 2304));
    QCOMPARE(m_service->press(40, 6400), 0);
    QCOMPARE(m_service->press(38, 2304), 1);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 1);
}

void TestHotkeyManager::refusedCombinationIsSilent()
{
    m_service->decide = [](quint32, quint32, HotKey::HotKeyId) {
        return HotKey::HotKeyService::Registration(Tessaline::Unexpected(-9878));
    };
    HotkeyManager manager(*m_defaults, m_scheduler, [this] { ++m_toggles; });
    QSignalSpy messages(&manager, &HotkeyManager::registrationMessageChanged);
    manager.setEnabled(true);
    QVERIFY(manager.hotKey()); // kept, although the platform refused it
    QVERIFY(!manager.registrationMessage().has_value());
    QCOMPARE(messages.count(), 0);
    QCOMPARE(m_service->press(40, 6400), 0);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 0);
}

// A desktop that asks the user answers after the registration returned: a refusal ends as a
// refusal at once does (kept, never delivered, no message) and publishes `sessionGrabsKeys`.
void TestHotkeyManager::lateRefusalLeavesTheRefusedStateAndAsksForTheHint()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [this] { ++m_toggles; });
    QSignalSpy grabs(&manager, &HotkeyManager::sessionGrabsKeysChanged);
    QSignalSpy messages(&manager, &HotkeyManager::registrationMessageChanged);
    manager.setEnabled(true);
    QCOMPARE(m_service->registrations.size(), 1);
    const HotKey::HotKeyId id = m_service->registrations.constFirst().id;
    QCOMPARE(grabs.count(), 0);

    m_service->grabs = false;
    m_service->answerLate(id, -50);
    QCOMPARE(grabs.count(), 1);
    QVERIFY(!manager.property("sessionGrabsKeys").toBool());
    QVERIFY(manager.hotKey());
    const HotKey::HotKeyBox* box = HotKey::HotKeysController::box(*manager.hotKey());
    QVERIFY(box != nullptr);
    QVERIFY(!box->carbonEventHotKey.has_value());
    QCOMPARE(m_service->press(40, 6400), 0);
    m_scheduler.advance(0);
    QCOMPARE(m_toggles, 0);
    QCOMPARE(messages.count(), 0);

    // A later grant (after the user changed the key) is published as well.
    manager.rebind();
    const HotKey::HotKeyId second = m_service->registrations.constLast().id;
    m_service->grabs = true;
    m_service->answerLate(second, HotKey::Status::noError);
    QCOMPARE(grabs.count(), 2);
    QVERIFY(manager.sessionGrabsKeys());
    QCOMPARE(m_service->press(40, 6400), 1);

    // An answer for a key the manager dropped reaches nobody.
    manager.setEnabled(false);
    m_service->answerLate(second, -50);
    QCOMPARE(grabs.count(), 2);
}

void TestHotkeyManager::disableFromSettings()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    manager.setEnabled(true);
    manager.disable();
    QCOMPARE(manager.isEnabled(), false);
    QVERIFY(!manager.hotKey());
    QVERIFY(m_service->active.empty());
    QCOMPARE(
        manager.registrationMessage(),
        std::optional<QString>(QStringLiteral("HUD hotkey disabled. Use the tray icon any time.")));
}

void TestHotkeyManager::publishedChanges()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    QSignalSpy enabled(&manager, &HotkeyManager::isEnabledChanged);
    QSignalSpy keyCode(&manager, &HotkeyManager::keyCodeChanged);
    QSignalSpy modifiers(&manager, &HotkeyManager::carbonModifiersChanged);
    QSignalSpy display(&manager, &HotkeyManager::displayTextChanged);
    QSignalSpy message(&manager, &HotkeyManager::registrationMessageChanged);

    manager.setProperty("isEnabled", true);
    QCOMPARE(enabled.count(), 1);
    QVERIFY(manager.hotKey());
    manager.setProperty("keyCode", 38u);
    QCOMPARE(keyCode.count(), 1);
    QCOMPARE(display.count(), 1);
    manager.setProperty("carbonModifiers", 256u);
    QCOMPARE(modifiers.count(), 1);
    QCOMPARE(display.count(), 2);
    QCOMPARE(manager.property("displayText").toString(), QStringLiteral("⌘J"));
    manager.setRegistrationMessage(QStringLiteral("x"));
    QCOMPARE(message.count(), 1);
    QCOMPARE(manager.property("registrationMessage").toString(), QStringLiteral("x"));
    QCOMPARE(manager.property("hasRegistrationMessage").toBool(), true);
}

void TestHotkeyManager::displayText_data()
{
    QTest::addColumn<quint32>("keyCode");
    QTest::addColumn<quint32>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addRow("default") << 40u << 6400u << QStringLiteral("⌃⌥⌘K");
    QTest::addRow("F1 with command and shift") << 122u << 768u << QStringLiteral("⇧⌘Key 122");
    QTest::addRow("no modifiers") << 49u << 0u << QStringLiteral("Space");
    QTest::addRow("all four") << 0u << 0x1B00u << QStringLiteral("⌃⌥⇧⌘A");
    QTest::addRow("largest code") << 65535u << 256u << QStringLiteral("⌘Key 65535");
}

void TestHotkeyManager::displayText()
{
    QFETCH(quint32, keyCode);
    QFETCH(quint32, modifiers);
    QFETCH(QString, text);
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    manager.setKeyCode(keyCode);
    manager.setCarbonModifiers(modifiers);
    QCOMPARE(manager.displayText(), text);
}

void TestHotkeyManager::displayTextInAKeyNameStyle()
{
    m_defaults->setBool(QStringLiteral("Hotkey.enabled"), true);
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    manager.setRegistrationMessage(HotkeyManager::setMessagePrefix() + manager.displayText() +
                                   QLatin1Char('.'));
    QSignalSpy text(&manager, &HotkeyManager::displayTextChanged);

    manager.setKeyNameStyle(KeyNameStyle::Words);
    QCOMPARE(manager.displayText(), QStringLiteral("Ctrl+Alt+Super+K"));
    QCOMPARE(text.count(), 1);
    QCOMPARE(manager.registrationMessage(), QStringLiteral("HUD hotkey set to Ctrl+Alt+Super+K."));

    manager.setKeyNameStyle(KeyNameStyle::Symbols);
    QCOMPARE(manager.displayText(), QStringLiteral("⌃⌥Super K"));
    QCOMPARE(manager.registrationMessage(), QStringLiteral("HUD hotkey set to ⌃⌥Super K."));

    // Other messages are not about the combination and stay as they are.
    manager.setRegistrationMessage(QStringLiteral("x"));
    manager.setKeyNameStyle(std::nullopt);
    QCOMPARE(manager.displayText(), QStringLiteral("⌃⌥⌘K"));
    QCOMPARE(manager.registrationMessage(), QStringLiteral("x"));
    QCOMPARE(text.count(), 3);

    // The stored combination is not touched by drawing.
    QCOMPARE(m_defaults->contains(QStringLiteral("Hotkey.keyCode")), false);
}

void TestHotkeyManager::sessionWithoutGlobalKeys()
{
    HotkeyManager manager(*m_defaults, m_scheduler, [] {});
    QVERIFY(manager.sessionGrabsKeys());
    QVERIFY(manager.property("sessionGrabsKeys").toBool());
    m_service->grabs = false;
    QVERIFY(!manager.sessionGrabsKeys());
    HotKey::HotKeysController::setService(nullptr);
    // Without a service nothing says the session refuses.
    QVERIFY(manager.sessionGrabsKeys());
}

void TestHotkeyManager::displayKeyTable_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    const QList<std::pair<int, const char*>> rows = {
        {0, "A"},  {1, "S"},       {2, "D"},    {3, "F"},      {4, "H"},    {5, "G"},  {6, "Z"},
        {7, "X"},  {8, "C"},       {9, "V"},    {11, "B"},     {12, "Q"},   {13, "W"}, {14, "E"},
        {15, "R"}, {16, "Y"},      {17, "T"},   {18, "1"},     {19, "2"},   {20, "3"}, {21, "4"},
        {22, "6"}, {23, "5"},      {25, "9"},   {26, "7"},     {28, "8"},   {29, "0"}, {31, "O"},
        {32, "U"}, {34, "I"},      {35, "P"},   {37, "L"},     {38, "J"},   {40, "K"}, {45, "N"},
        {46, "M"}, {36, "Return"}, {48, "Tab"}, {49, "Space"}, {53, "Esc"},
    };
    for (const auto& [code, text] : rows)
        QTest::addRow("%d", code) << code << QString::fromUtf8(text);
    QTest::addRow("123") << 123 << QStringLiteral("←");
    QTest::addRow("124") << 124 << QStringLiteral("→");
    QTest::addRow("125") << 125 << QStringLiteral("↓");
    QTest::addRow("126") << 126 << QStringLiteral("↑");
    // Punctuation, function keys and every other code fall back to "Key <code>".
    for (int code : {10, 24, 27, 30, 33, 39,  41,  42,  43,   44,   47,
                     50, 51, 52, 55, 96, 117, 122, 127, 1000, 65535})
        QTest::addRow("fallback %d", code) << code << QStringLiteral("Key %1").arg(code);
}

void TestHotkeyManager::displayKeyTable()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    QCOMPARE(HotkeyManager::displayKey(static_cast<quint16>(code)), text);
}

void TestHotkeyManager::displayModifiers_data()
{
    QTest::addColumn<quint32>("bits");
    QTest::addColumn<QString>("text");
    QTest::addRow("none") << 0u << QString();
    QTest::addRow("control") << 0x1000u << QStringLiteral("⌃");
    QTest::addRow("option") << 0x800u << QStringLiteral("⌥");
    QTest::addRow("shift") << 0x200u << QStringLiteral("⇧");
    QTest::addRow("command") << 0x100u << QStringLiteral("⌘");
    QTest::addRow("command shift") << 0x300u << QStringLiteral("⇧⌘");
    QTest::addRow("all") << 0x1B00u << QStringLiteral("⌃⌥⇧⌘");
    QTest::addRow("other bits ignored")
        << (0x100u | 0x1u | 0x400u | 0x2000u) << QStringLiteral("⌘");
}

void TestHotkeyManager::displayModifiers()
{
    QFETCH(quint32, bits);
    QFETCH(QString, text);
    QCOMPARE(HotkeyManager::displayModifiers(bits), text);
}

void TestHotkeyManager::carbonModifiersFromFlags_data()
{
    QTest::addColumn<quint64>("flags");
    QTest::addColumn<quint32>("bits");
    QTest::addRow("command") << quint64(0x100000) << 256u;
    QTest::addRow("option") << quint64(0x80000) << 2048u;
    QTest::addRow("control") << quint64(0x40000) << 4096u;
    QTest::addRow("shift") << quint64(0x20000) << 512u;
    QTest::addRow("caps lock and fn ignored") << quint64(0x10000 | 0x800000) << 0u;
    QTest::addRow("control option command") << quint64(0x1C0000) << 6400u;
}

void TestHotkeyManager::carbonModifiersFromFlags()
{
    QFETCH(quint64, flags);
    QFETCH(quint32, bits);
    QCOMPARE(HotkeyManager::carbonModifiersFromFlags(flags), bits);
}

void TestHotkeyManager::fixedTexts()
{
    QCOMPARE(HotkeyManager::setMessagePrefix(), QStringLiteral("HUD hotkey set to "));
    QCOMPARE(HotkeyManager::chooseModifierMessage(),
             QStringLiteral("Choose at least one modifier, like Ctrl or Alt."));
    QCOMPARE(HotkeyManager::disabledMessage(),
             QStringLiteral("HUD hotkey disabled. Use the tray icon any time."));
}

QTEST_GUILESS_MAIN(TestHotkeyManager)
#include "tst_HotkeyManager.moc"
