// SPDX-License-Identifier: MIT
#include "FakeHotKeyService.h"

#include <hotkey/HotKeysController.h>
#include <hotkey/KeyCombo.h>

#include <QTest>

using HotKey::Key;
using HotKey::KeyCombo;
using HotKey::ModifierFlags;
using Tessaline::Testing::FakeHotKeyService;

class TestKeyCombo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void comboFromKeyAndFlags();
    void dictionaryRoundTrip();
    void dictionaryNeedsIntegers_data();
    void dictionaryNeedsIntegers();
    void keyAndModifierViews();
    void description();
    void codeToStringIsAlwaysNone();
    void modifierConversions_data();
    void modifierConversions();
    void modifierDescriptionOrderIsFixed_data();
    void modifierDescriptionOrderIsFixed();
    void standardCombos();
    void menuCombos();
    void mainMenuCombos();
    void systemCombos();

private:
    std::unique_ptr<FakeHotKeyService> m_service;
};

void TestKeyCombo::init()
{
    m_service = std::make_unique<FakeHotKeyService>();
    HotKey::HotKeysController::setService(m_service.get());
}

void TestKeyCombo::cleanup()
{
    HotKey::HotKeysController::setService(nullptr);
}

void TestKeyCombo::comboFromKeyAndFlags()
{
    const KeyCombo combo(Key::k, ModifierFlags(ModifierFlags::control | ModifierFlags::option |
                                               ModifierFlags::command));
    QCOMPARE(combo.carbonKeyCode, 40u);
    QCOMPARE(combo.carbonModifiers, 6400u);
    const QVariantMap dictionary = combo.dictionary();
    QCOMPARE(dictionary.size(), 2);
    QCOMPARE(dictionary.value(QStringLiteral("keyCode")).toLongLong(), 40);
    QCOMPARE(dictionary.value(QStringLiteral("modifiers")).toLongLong(), 6400);
    QCOMPARE(dictionary.value(QStringLiteral("keyCode")).typeId(), int(QMetaType::LongLong));
    QVERIFY(combo.isValid());
}

void TestKeyCombo::dictionaryRoundTrip()
{
    const KeyCombo combo(122, 512);
    QCOMPARE(KeyCombo::fromDictionary(combo.dictionary()), std::optional<KeyCombo>(combo));
    const QVariantMap ints{{QStringLiteral("keyCode"), 3}, {QStringLiteral("modifiers"), 256u}};
    QCOMPARE(KeyCombo::fromDictionary(ints), std::optional<KeyCombo>(KeyCombo(3, 256)));
}

void TestKeyCombo::dictionaryNeedsIntegers_data()
{
    QTest::addColumn<QVariantMap>("dictionary");
    const auto code = QStringLiteral("keyCode");
    const auto mods = QStringLiteral("modifiers");
    QTest::addRow("empty") << QVariantMap{};
    QTest::addRow("no modifiers") << QVariantMap{{code, 40}};
    QTest::addRow("no key code") << QVariantMap{{mods, 256}};
    QTest::addRow("string code") << QVariantMap{{code, QStringLiteral("40")}, {mods, 256}};
    QTest::addRow("double modifiers") << QVariantMap{{code, 40}, {mods, 256.0}};
    QTest::addRow("bool code") << QVariantMap{{code, true}, {mods, 256}};
}

void TestKeyCombo::dictionaryNeedsIntegers()
{
    QFETCH(QVariantMap, dictionary);
    QVERIFY(!KeyCombo::fromDictionary(dictionary).has_value());
}

void TestKeyCombo::keyAndModifierViews()
{
    KeyCombo combo(40, 0x1000 | 0x100);
    QCOMPARE(combo.key(), std::optional<Key>(Key::k));
    QCOMPARE(combo.modifiers(), ModifierFlags(ModifierFlags::control | ModifierFlags::command));

    combo.setKey(Key::f5);
    QCOMPARE(combo.carbonKeyCode, 96u);
    combo.setKey(std::nullopt);
    QCOMPARE(combo.carbonKeyCode, 0u);
    QCOMPARE(combo.key(), std::optional<Key>(Key::a));

    combo.setModifiers(ModifierFlags(ModifierFlags::shift | 0x800000)); // an unconverted flag
    QCOMPARE(combo.carbonModifiers, 512u);

    QVERIFY(!KeyCombo(52, 0).key().has_value());
}

void TestKeyCombo::description()
{
    QCOMPARE(KeyCombo(40, 6400).description(), QStringLiteral("⌃⌥⌘K"));
    QCOMPARE(KeyCombo(96, 512).description(), QStringLiteral("⇧F5"));
    // A code that names no key leaves the key part out.
    QCOMPARE(KeyCombo(52, 256).description(), QStringLiteral("⌘"));
    QCOMPARE(KeyCombo(0, 0).description(), QStringLiteral("A"));
}

void TestKeyCombo::codeToStringIsAlwaysNone()
{
    QVERIFY(!KeyCombo::carbonKeyCodeToString(0).has_value());
    QVERIFY(!KeyCombo::carbonKeyCodeToString(40).has_value());
}

void TestKeyCombo::modifierConversions_data()
{
    QTest::addColumn<quint64>("flags");
    QTest::addColumn<quint32>("carbon");
    QTest::addRow("none") << quint64(0) << 0u;
    QTest::addRow("shift") << quint64(0x20000) << 0x200u;
    QTest::addRow("control") << quint64(0x40000) << 0x1000u;
    QTest::addRow("option") << quint64(0x80000) << 0x800u;
    QTest::addRow("command") << quint64(0x100000) << 0x100u;
    QTest::addRow("all") << quint64(0x1E0000) << 0x1B00u;
}

void TestKeyCombo::modifierConversions()
{
    QFETCH(quint64, flags);
    QFETCH(quint32, carbon);
    QCOMPARE(ModifierFlags(flags).carbonFlags(), carbon);
    QCOMPARE(ModifierFlags::fromCarbonFlags(carbon), ModifierFlags(flags));
    // Flags outside the four are not converted in either direction.
    QCOMPARE(ModifierFlags(flags | 0x10000 | 0x800000).carbonFlags(), carbon);
    QCOMPARE(ModifierFlags::fromCarbonFlags(carbon | 0x1 | 0x400 | 0x2000), ModifierFlags(flags));
}

void TestKeyCombo::modifierDescriptionOrderIsFixed_data()
{
    QTest::addColumn<QList<quint64>>("order");
    QTest::addRow("control first") << QList<quint64>{ModifierFlags::control, ModifierFlags::option,
                                                     ModifierFlags::shift, ModifierFlags::command};
    QTest::addRow("command first") << QList<quint64>{ModifierFlags::command, ModifierFlags::shift,
                                                     ModifierFlags::option, ModifierFlags::control};
    QTest::addRow("mixed") << QList<quint64>{ModifierFlags::shift, ModifierFlags::command,
                                             ModifierFlags::control, ModifierFlags::option};
}

void TestKeyCombo::modifierDescriptionOrderIsFixed()
{
    QFETCH(QList<quint64>, order);
    ModifierFlags flags;
    for (quint64 flag : order)
        flags = flags | ModifierFlags(flag);
    QCOMPARE(flags.description(), QStringLiteral("⌃⌥⇧⌘"));
    QCOMPARE(ModifierFlags().description(), QString());
    QCOMPARE(ModifierFlags(ModifierFlags::command | ModifierFlags::shift).description(),
             QStringLiteral("⇧⌘"));
}

void TestKeyCombo::standardCombos()
{
    const QList<KeyCombo> combos = KeyCombo::standardKeyCombos();
    QCOMPARE(combos.size(), 46);
    QStringList texts;
    for (const KeyCombo& combo : combos)
        texts.append(combo.description());
    const QStringList expected = {
        QStringLiteral("⌘,"),  QStringLiteral("⌘H"),   QStringLiteral("⌥⌘H"), QStringLiteral("⌘Q"),
        QStringLiteral("⌘N"),  QStringLiteral("⌘O"),   QStringLiteral("⌘W"),  QStringLiteral("⌘S"),
        QStringLiteral("⇧⌘S"), QStringLiteral("⌘R"),   QStringLiteral("⇧⌘P"), QStringLiteral("⌘P"),
        QStringLiteral("⌘Z"),  QStringLiteral("⇧⌘Z"),  QStringLiteral("⌘X"),  QStringLiteral("⌘C"),
        QStringLiteral("⌘V"),  QStringLiteral("⌥⇧⌘V"), QStringLiteral("⌘A"),  QStringLiteral("⌘F"),
        QStringLiteral("⌥⌘F"), QStringLiteral("⌘G"),   QStringLiteral("⇧⌘G"), QStringLiteral("⌘E"),
        QStringLiteral("⌘J"),  QStringLiteral("⇧⌘;"),  QStringLiteral("⌘;"),  QStringLiteral("⌘T"),
        QStringLiteral("⌘B"),  QStringLiteral("⌘I"),   QStringLiteral("⌘U"),  QStringLiteral("⇧⌘="),
        QStringLiteral("⌘-"),  QStringLiteral("⇧⌘C"),  QStringLiteral("⌥⌘C"), QStringLiteral("⌥⌘V"),
        QStringLiteral("⇧⌘["), QStringLiteral("⇧⌘\\"), QStringLiteral("⇧⌘]"), QStringLiteral("⌃⌘C"),
        QStringLiteral("⌃⌘V"), QStringLiteral("⌥⌘T"),  QStringLiteral("⌃⌘S"), QStringLiteral("⌃⌘F"),
        QStringLiteral("⌘M"),  QStringLiteral("⇧⌘/"),
    };
    QCOMPARE(texts, expected);
    QCOMPARE(combos.first(), KeyCombo(43, 256));
    QCOMPARE(combos.last(), KeyCombo(44, 256 | 512));
}

void TestKeyCombo::menuCombos()
{
    auto sub = std::make_shared<HotKey::Menu>();
    sub->items = {
        {QStringLiteral("]"), ModifierFlags(ModifierFlags::command | ModifierFlags::shift), {}},
        {QStringLiteral("nothing"), ModifierFlags(ModifierFlags::command), {}},
    };
    auto deeper = std::make_shared<HotKey::Menu>();
    deeper->items = {{QStringLiteral("f5"), ModifierFlags(ModifierFlags::control), {}}};
    HotKey::Menu menu;
    menu.items = {
        {QStringLiteral("s"), ModifierFlags(ModifierFlags::command), {}},
        // An item without a key of its own still contributes its submenu's combos.
        {QString(), ModifierFlags(ModifierFlags::command), sub},
        {QStringLiteral("Q"), ModifierFlags(ModifierFlags::option | 0x800000), deeper},
        {QStringLiteral("'"), ModifierFlags(ModifierFlags::command), {}},
    };
    const QList<KeyCombo> expected = {KeyCombo(1, 256), KeyCombo(30, 768), KeyCombo(12, 2048),
                                      KeyCombo(96, 4096)};
    QCOMPARE(KeyCombo::keyCombos(menu), expected);
    QCOMPARE(KeyCombo::keyCombos(HotKey::Menu{}), QList<KeyCombo>{});
}

void TestKeyCombo::mainMenuCombos()
{
    QCOMPARE(KeyCombo::mainMenuKeyCombos(), QList<KeyCombo>{});
    HotKey::Menu menu;
    menu.items = {{QStringLiteral("n"), ModifierFlags(ModifierFlags::command), {}}};
    m_service->menu = menu;
    QCOMPARE(KeyCombo::mainMenuKeyCombos(), QList<KeyCombo>{KeyCombo(45, 256)});
    HotKey::HotKeysController::setService(nullptr);
    QCOMPARE(KeyCombo::mainMenuKeyCombos(), QList<KeyCombo>{});
}

void TestKeyCombo::systemCombos()
{
    QCOMPARE(KeyCombo::systemKeyCombos(), QList<KeyCombo>{});
    m_service->symbolic = QList<QVariantMap>{};
    QCOMPARE(KeyCombo::systemKeyCombos(), QList<KeyCombo>{});

    auto entry = [](QVariant enabled, QVariant code, QVariant modifiers) {
        QVariantMap map;
        if (enabled.isValid())
            map.insert(QStringLiteral("enabled"), enabled);
        if (code.isValid())
            map.insert(QStringLiteral("keyCode"), code);
        if (modifiers.isValid())
            map.insert(QStringLiteral("modifiers"), modifiers);
        return map;
    };
    m_service->symbolic = QList<QVariantMap>{
        entry(true, 123, 4096),
        entry(false, 124, 4096),                 // disabled
        entry(1, 49, 256),                       // a number that is true
        entry(QStringLiteral("yes"), 50, 256),   // not a number
        entry(true, QStringLiteral("40"), 256),  // code not a number
        entry(true, 40, QVariant()),             // modifiers missing
        entry(QVariant(), 41, 256),              // enabled missing
        entry(true, qint64(0x100000005), 0x200), // read as 32 bits
    };
    const QList<KeyCombo> expected = {KeyCombo(123, 4096), KeyCombo(49, 256), KeyCombo(5, 512)};
    QCOMPARE(KeyCombo::systemKeyCombos(), expected);
}

QTEST_GUILESS_MAIN(TestKeyCombo)
#include "tst_KeyCombo.moc"
