// SPDX-License-Identifier: MIT
#include "platform/x11/RawKeyTranslator.h"

#include <QtTest>

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Tessaline;

namespace {

struct ContextDeleter
{
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
};

// A keymap compiled from the system's keyboard descriptions, as an X server builds its own.
RawKeyTranslator::KeymapPtr compileKeymap(const char* layout)
{
    std::unique_ptr<xkb_context, ContextDeleter> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context)
        return nullptr;
    xkb_rule_names names{};
    names.rules = "evdev";
    names.model = "pc105";
    names.layout = layout;
    return RawKeyTranslator::KeymapPtr(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

// The key code whose first level in the first layout is `sym`.
xkb_keycode_t keycodeFor(xkb_keymap* keymap, xkb_keysym_t sym)
{
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap);
         ++key) {
        const xkb_keysym_t* syms = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap, key, 0, 0, &syms);
        if (count == 1 && syms[0] == sym)
            return key;
    }
    return XKB_KEYCODE_INVALID;
}

constexpr quint64 kCommand = SystemKeyEvent::Command;
constexpr quint64 kShift = SystemKeyEvent::Shift;
constexpr quint64 kControl = SystemKeyEvent::Control;
constexpr quint64 kOption = SystemKeyEvent::Option;

} // namespace

class TestRawKeyTranslator : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void screenshotChordReadsCommandShiftAndTheDigit();
    void modifiersFollowPressesAndReleases();
    void modifierKeysGiveNoEvent();
    void repeatsOfAModifierDoNotStickIt();
    void charactersIgnoreEveryModifier();
    void printKeyIsNamedWhateverIsHeld();
    void capsLockIsReportedAsLocked();
    void systemKeysGiveAuxControlButtons_data();
    void systemKeysGiveAuxControlButtons();
    void systemKeyRepeatsCarryTheRepeatFlag();
    void ordinaryReleasesGiveNothing();
    void unknownKeyGivesNothing();
    void charactersComeFromTheActiveLayout();

private:
    xkb_keycode_t key(xkb_keysym_t sym) const { return keycodeFor(m_keymap, sym); }
    std::unique_ptr<RawKeyTranslator> m_translator;
    xkb_keymap* m_keymap = nullptr; // owned by m_translator
};

void TestRawKeyTranslator::initTestCase()
{
    QVERIFY2(compileKeymap("us"), "no XKB keyboard descriptions on this machine");
}

void TestRawKeyTranslator::init()
{
    RawKeyTranslator::KeymapPtr keymap = compileKeymap("us");
    QVERIFY(keymap);
    m_keymap = keymap.get();
    m_translator = std::make_unique<RawKeyTranslator>(std::move(keymap));
    for (xkb_keysym_t sym : {XKB_KEY_Super_L, XKB_KEY_Shift_L, XKB_KEY_4, XKB_KEY_a,
                             XKB_KEY_XF86AudioRaiseVolume, XKB_KEY_XF86AudioMute}) {
        QVERIFY2(key(sym) != XKB_KEYCODE_INVALID, qPrintable(QString::number(sym, 16)));
    }
}

void TestRawKeyTranslator::screenshotChordReadsCommandShiftAndTheDigit()
{
    RawKeyTranslator& t = *m_translator;
    QVERIFY(!t.keyPressed(key(XKB_KEY_Super_L)));
    QVERIFY(!t.keyPressed(key(XKB_KEY_Shift_L)));
    const auto four = t.keyPressed(key(XKB_KEY_4));
    QCOMPARE(four,
             SystemKeyEvent::keyDown(kCommand | kShift, QStringLiteral("4"), QStringLiteral("4")));
    QVERIFY(!t.keyReleased(key(XKB_KEY_4)));
    const auto three = t.keyPressed(key(XKB_KEY_3));
    QCOMPARE(three,
             SystemKeyEvent::keyDown(kCommand | kShift, QStringLiteral("3"), QStringLiteral("3")));
}

void TestRawKeyTranslator::modifiersFollowPressesAndReleases()
{
    RawKeyTranslator& t = *m_translator;
    QCOMPARE(t.modifierFlags(), quint64(0));
    t.keyPressed(key(XKB_KEY_Control_L));
    t.keyPressed(key(XKB_KEY_Alt_L));
    t.keyPressed(key(XKB_KEY_Super_L));
    t.keyPressed(key(XKB_KEY_Shift_R));
    QCOMPARE(t.modifierFlags(), kControl | kOption | kCommand | kShift);
    QCOMPARE(t.keyPressed(key(XKB_KEY_5))->modifierFlags, kControl | kOption | kCommand | kShift);

    t.keyReleased(key(XKB_KEY_Super_L));
    t.keyReleased(key(XKB_KEY_Alt_L));
    QCOMPARE(t.keyPressed(key(XKB_KEY_4))->modifierFlags, kControl | kShift);
    t.keyReleased(key(XKB_KEY_Control_L));
    t.keyReleased(key(XKB_KEY_Shift_R));
    QCOMPARE(t.keyPressed(key(XKB_KEY_4))->modifierFlags, quint64(0));
}

void TestRawKeyTranslator::modifierKeysGiveNoEvent()
{
    RawKeyTranslator& t = *m_translator;
    for (xkb_keysym_t sym : {XKB_KEY_Shift_L, XKB_KEY_Shift_R, XKB_KEY_Control_L, XKB_KEY_Control_R,
                             XKB_KEY_Alt_L, XKB_KEY_Super_L, XKB_KEY_Super_R, XKB_KEY_Caps_Lock}) {
        const xkb_keycode_t code = key(sym);
        if (code == XKB_KEYCODE_INVALID)
            continue;
        QVERIFY2(!t.keyPressed(code), qPrintable(QString::number(sym, 16)));
        QVERIFY(!t.keyReleased(code));
    }
}

void TestRawKeyTranslator::repeatsOfAModifierDoNotStickIt()
{
    RawKeyTranslator& t = *m_translator;
    t.keyPressed(key(XKB_KEY_Shift_L));
    for (int i = 0; i < 5; ++i)
        t.keyPressed(key(XKB_KEY_Shift_L), true);
    t.keyReleased(key(XKB_KEY_Shift_L));
    QCOMPARE(t.modifierFlags(), quint64(0));
    QCOMPARE(t.keyPressed(key(XKB_KEY_4))->modifierFlags, quint64(0));
}

void TestRawKeyTranslator::charactersIgnoreEveryModifier()
{
    RawKeyTranslator& t = *m_translator;
    t.keyPressed(key(XKB_KEY_Shift_L));
    QCOMPARE(t.keyPressed(key(XKB_KEY_a))->charactersIgnoringModifiers,
             std::optional<QString>(QStringLiteral("a")));
    QCOMPARE(t.keyPressed(key(XKB_KEY_5))->charactersIgnoringModifiers,
             std::optional<QString>(QStringLiteral("5")));
    // Keys without characters have none.
    QCOMPARE(t.keyPressed(key(XKB_KEY_Left))->charactersIgnoringModifiers,
             std::optional<QString>());
}

void TestRawKeyTranslator::printKeyIsNamedWhateverIsHeld()
{
    RawKeyTranslator& t = *m_translator;
    const xkb_keycode_t print = key(XKB_KEY_Print);
    QVERIFY(print != XKB_KEYCODE_INVALID);
    QCOMPARE(t.keyPressed(print),
             SystemKeyEvent::keyDown(0, std::nullopt, QStringLiteral("Print")));
    t.keyReleased(print);
    // With Alt held the key types Sys_Req, but it is still the Print key.
    t.keyPressed(key(XKB_KEY_Alt_L));
    const auto altPrint = t.keyPressed(print);
    QVERIFY(altPrint);
    QCOMPARE(altPrint->keyName, QStringLiteral("Print"));
    QCOMPARE(altPrint->modifierFlags, kOption);
    t.keyReleased(print);
    t.keyReleased(key(XKB_KEY_Alt_L));
    t.keyPressed(key(XKB_KEY_Shift_L));
    t.keyPressed(key(XKB_KEY_Super_L));
    QCOMPARE(t.keyPressed(print)->keyName, QStringLiteral("Print"));
    // Other keys carry their own names.
    QCOMPARE(t.keyPressed(key(XKB_KEY_Left))->keyName, QStringLiteral("Left"));
    QCOMPARE(t.keyPressed(key(XKB_KEY_a))->keyName, QStringLiteral("a"));
}

void TestRawKeyTranslator::capsLockIsReportedAsLocked()
{
    RawKeyTranslator& t = *m_translator;
    t.keyPressed(key(XKB_KEY_Caps_Lock));
    t.keyReleased(key(XKB_KEY_Caps_Lock));
    QCOMPARE(t.modifierFlags(), quint64(SystemKeyEvent::CapsLock));
    QCOMPARE(t.keyPressed(key(XKB_KEY_a))->charactersIgnoringModifiers,
             std::optional<QString>(QStringLiteral("a")));
    t.keyPressed(key(XKB_KEY_Caps_Lock));
    t.keyReleased(key(XKB_KEY_Caps_Lock));
    QCOMPARE(t.modifierFlags(), quint64(0));
}

void TestRawKeyTranslator::systemKeysGiveAuxControlButtons_data()
{
    QTest::addColumn<quint32>("sym");
    QTest::addColumn<int>("keyType");
    QTest::addRow("volume up") << quint32(XKB_KEY_XF86AudioRaiseVolume) << 0;
    QTest::addRow("volume down") << quint32(XKB_KEY_XF86AudioLowerVolume) << 1;
    QTest::addRow("brightness up") << quint32(XKB_KEY_XF86MonBrightnessUp) << 2;
    QTest::addRow("brightness down") << quint32(XKB_KEY_XF86MonBrightnessDown) << 3;
    QTest::addRow("mute") << quint32(XKB_KEY_XF86AudioMute) << 7;
    QTest::addRow("play") << quint32(XKB_KEY_XF86AudioPlay) << 16;
    QTest::addRow("pause") << quint32(XKB_KEY_XF86AudioPause) << 16;
    QTest::addRow("next") << quint32(XKB_KEY_XF86AudioNext) << 17;
    QTest::addRow("previous") << quint32(XKB_KEY_XF86AudioPrev) << 18;
}

void TestRawKeyTranslator::systemKeysGiveAuxControlButtons()
{
    QFETCH(quint32, sym);
    QFETCH(int, keyType);
    QCOMPARE(RawKeyTranslator::auxKeyType(sym), std::optional<int>(keyType));

    const xkb_keycode_t code = key(sym);
    QVERIFY(code != XKB_KEYCODE_INVALID);
    RawKeyTranslator& t = *m_translator;
    // Modifiers held at the same time do not change a system key.
    t.keyPressed(key(XKB_KEY_Alt_L));
    t.keyPressed(key(XKB_KEY_Shift_L));
    const auto down = t.keyPressed(code);
    QVERIFY(down);
    QCOMPARE(down->type, SystemKeyEvent::Type::SystemDefined);
    QCOMPARE(down->subtype, qint16(8));
    QCOMPARE(down->data1, qint64((keyType << 16) | (0x0A << 8)));
    const auto up = t.keyReleased(code);
    QVERIFY(up);
    QCOMPARE(up->data1, qint64((keyType << 16) | (0x0B << 8)));
}

void TestRawKeyTranslator::systemKeyRepeatsCarryTheRepeatFlag()
{
    RawKeyTranslator& t = *m_translator;
    const xkb_keycode_t code = key(XKB_KEY_XF86AudioRaiseVolume);
    t.keyPressed(code);
    const auto repeat = t.keyPressed(code, true);
    QVERIFY(repeat);
    QCOMPARE(repeat->data1, qint64((0 << 16) | (0x0A << 8) | 1));
    QCOMPARE(RawKeyTranslator::auxKeyType(XKB_KEY_a), std::optional<int>());
}

void TestRawKeyTranslator::ordinaryReleasesGiveNothing()
{
    RawKeyTranslator& t = *m_translator;
    QVERIFY(t.keyPressed(key(XKB_KEY_a)));
    QVERIFY(!t.keyReleased(key(XKB_KEY_a)));
}

void TestRawKeyTranslator::unknownKeyGivesNothing()
{
    RawKeyTranslator& t = *m_translator;
    // Key code 8 is the lowest an X server sends and has no symbol in this keymap.
    QVERIFY(!t.keyPressed(8));
    QVERIFY(!t.keyReleased(8));
}

void TestRawKeyTranslator::charactersComeFromTheActiveLayout()
{
    RawKeyTranslator::KeymapPtr keymap = compileKeymap("fr");
    QVERIFY(keymap);
    const xkb_keycode_t digitFour = key(XKB_KEY_4); // the same key position in "us"
    RawKeyTranslator t(std::move(keymap));
    // On an AZERTY keyboard that key types an apostrophe without Shift.
    QCOMPARE(t.keyPressed(digitFour)->charactersIgnoringModifiers,
             std::optional<QString>(QStringLiteral("'")));
}

QTEST_GUILESS_MAIN(TestRawKeyTranslator)
#include "tst_RawKeyTranslator.moc"
