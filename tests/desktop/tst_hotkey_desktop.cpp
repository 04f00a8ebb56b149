// SPDX-License-Identifier: MIT
// The HUD hotkey end to end on a real X server: xdotool presses the keys, the X11 hot-key
// service grabs them, and the manager's toggle runs.
#include "hotkeys/HotkeyManager.h"
#include "platform/Scheduler.h"
#include "platform/x11/XcbHotKeyService.h"
#include "platform/x11/XcbReply.h"
#include "settings/DefaultsStore.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>

#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <cstdlib>

using Tessaline::DefaultsStore;
using Tessaline::HotkeyManager;
using Tessaline::TimerScheduler;
using Tessaline::XcbHotKeyService;

namespace {

constexpr quint16 kControlAltSuper = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

/// A second X client, standing for another application that holds keys of its own.
class OtherClient
{
public:
    OtherClient()
    {
        m_connection = xcb_connect(nullptr, nullptr);
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        m_symbols = xcb_key_symbols_alloc(m_connection);
    }
    ~OtherClient()
    {
        xcb_key_symbols_free(m_symbols);
        xcb_disconnect(m_connection);
    }
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    bool isConnected() const { return xcb_connection_has_error(m_connection) == 0; }

    xcb_keycode_t keycode(xcb_keysym_t keysym) const
    {
        const Tessaline::XcbReply<xcb_keycode_t> codes(
            xcb_key_symbols_get_keycode(m_symbols, keysym));
        return codes ? codes.get()[0] : xcb_keycode_t(0);
    }

    /// Grabs the key with the modifiers; false when another client holds it.
    bool grab(xcb_keysym_t keysym, quint16 modifiers)
    {
        const Tessaline::XcbReply<xcb_generic_error_t> error(xcb_request_check(
            m_connection, xcb_grab_key_checked(m_connection, 1, m_root, modifiers, keycode(keysym),
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        return !error;
    }

    void ungrab(xcb_keysym_t keysym, quint16 modifiers)
    {
        xcb_ungrab_key(m_connection, keycode(keysym), m_root, modifiers);
        xcb_flush(m_connection);
    }

    /// Whether a key press of `keysym` arrived within `timeoutMs`.
    bool receivedPress(xcb_keysym_t keysym, int timeoutMs)
    {
        const xcb_keycode_t code = keycode(keysym);
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < timeoutMs) {
            while (const Tessaline::XcbReply<xcb_generic_event_t> event{
                xcb_poll_for_event(m_connection)}) {
                const bool match =
                    (event->response_type & 0x7f) == XCB_KEY_PRESS &&
                    reinterpret_cast<const xcb_key_press_event_t*>(event.get())->detail == code;
                if (match)
                    return true;
            }
            QTest::qWait(10);
        }
        return false;
    }

    /// The keyboard's current modifier and lock state.
    quint16 modifierState()
    {
        const auto reply = Tessaline::xcbReply(xcb_query_pointer_reply, m_connection,
                                               xcb_query_pointer(m_connection, m_root));
        return reply ? reply->mask : quint16(0);
    }

private:
    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = 0;
    xcb_key_symbols_t* m_symbols = nullptr;
};

bool xdotool(const QStringList& arguments)
{
    return QProcess::execute(QStringLiteral("xdotool"), arguments) == 0;
}

bool pressKeys(const char* chord)
{
    return xdotool({QStringLiteral("key"), QString::fromLatin1(chord)});
}

} // namespace

class TestHotkeyDesktop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void enabledHotkeyTogglesAndDisabledDoesNothing();
    void takenCombinationFailsQuietlyAndAnotherWorks();
    void releasesReachTheKeyUpHandler();

private:
    void settle() { QTest::qWait(300); }

    QTemporaryDir m_dir;
    std::unique_ptr<XcbHotKeyService> m_service;
    std::unique_ptr<DefaultsStore> m_defaults;
    TimerScheduler m_scheduler;
    std::unique_ptr<HotkeyManager> m_manager;
    int m_toggles = 0;
};

void TestHotkeyDesktop::initTestCase()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    m_service = std::make_unique<XcbHotKeyService>();
    QVERIFY(m_service->isAvailable());
    HotKey::HotKeysController::setService(m_service.get());
    m_defaults = std::make_unique<DefaultsStore>(m_dir.filePath(QStringLiteral("defaults.json")));
    m_manager = std::make_unique<HotkeyManager>(*m_defaults, m_scheduler, [this] { ++m_toggles; });
}

void TestHotkeyDesktop::cleanupTestCase()
{
    m_manager.reset();
    HotKey::HotKeysController::setService(nullptr);
    m_service.reset();
}

void TestHotkeyDesktop::enabledHotkeyTogglesAndDisabledDoesNothing()
{
    OtherClient other;
    QVERIFY(other.isConnected());
    QCOMPARE(m_manager->displayText(), QStringLiteral("⌃⌥⌘K"));

    // Off by default: the key does nothing.
    QVERIFY(pressKeys("ctrl+alt+super+k"));
    settle();
    QCOMPARE(m_toggles, 0);

    m_manager->setEnabled(true);
    QVERIFY(m_manager->hotKey());
    QVERIFY(HotKey::HotKeysController::box(*m_manager->hotKey())->carbonEventHotKey.has_value());
    // While this process holds the key, another client cannot take it.
    QVERIFY(!other.grab(XKB_KEY_k, kControlAltSuper));

    QVERIFY(pressKeys("ctrl+alt+super+k"));
    QTRY_COMPARE_WITH_TIMEOUT(m_toggles, 1, 3000);
    QVERIFY(pressKeys("ctrl+alt+super+k"));
    QTRY_COMPARE_WITH_TIMEOUT(m_toggles, 2, 3000);

    // With NumLock on (and with CapsLock on) the same chord still toggles.
    QVERIFY(pressKeys("Num_Lock"));
    QTRY_VERIFY_WITH_TIMEOUT((other.modifierState() & XCB_MOD_MASK_2) != 0, 3000);
    QVERIFY(pressKeys("ctrl+alt+super+k"));
    QTRY_COMPARE_WITH_TIMEOUT(m_toggles, 3, 3000);
    QVERIFY(pressKeys("Caps_Lock"));
    QTRY_VERIFY_WITH_TIMEOUT((other.modifierState() & XCB_MOD_MASK_LOCK) != 0, 3000);
    QVERIFY(pressKeys("ctrl+alt+super+k"));
    QTRY_COMPARE_WITH_TIMEOUT(m_toggles, 4, 3000);
    QVERIFY(pressKeys("Caps_Lock"));
    QVERIFY(pressKeys("Num_Lock"));
    QTRY_COMPARE_WITH_TIMEOUT(other.modifierState() & (XCB_MOD_MASK_2 | XCB_MOD_MASK_LOCK), 0,
                              3000);

    // Holding the chord long enough for the key to repeat still toggles once.
    QVERIFY(xdotool({QStringLiteral("keydown"), QStringLiteral("ctrl+alt+super+k")}));
    QTest::qWait(1500);
    QVERIFY(xdotool({QStringLiteral("keyup"), QStringLiteral("ctrl+alt+super+k")}));
    settle();
    QCOMPARE(m_toggles, 5);
    // Letting the modifiers go before the key still ends the press.
    QVERIFY(xdotool({QStringLiteral("keydown"), QStringLiteral("ctrl+alt+super+k")}));
    QVERIFY(xdotool({QStringLiteral("keyup"), QStringLiteral("ctrl+alt+super")}));
    QVERIFY(xdotool({QStringLiteral("keyup"), QStringLiteral("k")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_toggles, 6, 3000);
    QVERIFY(pressKeys("ctrl+alt+super+k"));
    QTRY_COMPARE_WITH_TIMEOUT(m_toggles, 7, 3000);

    // Other modifiers make another chord: nothing happens.
    QVERIFY(pressKeys("ctrl+alt+k"));
    QVERIFY(pressKeys("ctrl+alt+super+shift+k"));
    settle();
    QCOMPARE(m_toggles, 7);

    m_manager->setEnabled(false);
    QVERIFY(!m_manager->hotKey());
    QVERIFY(pressKeys("ctrl+alt+super+k"));
    settle();
    QCOMPARE(m_toggles, 7);

    // Every variant was given back: another client can now grab each of them.
    for (int locks : {0, int(XCB_MOD_MASK_2), int(XCB_MOD_MASK_LOCK),
                      int(XCB_MOD_MASK_2 | XCB_MOD_MASK_LOCK)}) {
        const auto modifiers = quint16(kControlAltSuper | locks);
        QVERIFY2(other.grab(XKB_KEY_k, modifiers), qPrintable(QString::number(locks)));
        other.ungrab(XKB_KEY_k, modifiers);
    }
}

void TestHotkeyDesktop::takenCombinationFailsQuietlyAndAnotherWorks()
{
    OtherClient other;
    QVERIFY(other.isConnected());
    // Another application holds ⌃⌥⌘J (without lock variants).
    QVERIFY(other.grab(XKB_KEY_j, kControlAltSuper));

    m_toggles = 0;
    m_manager->setKeyCode(38); // J
    m_manager->setEnabled(true);
    QVERIFY(m_manager->hotKey());
    // The refusal is quiet: no message, and no system reference for the hot key.
    QVERIFY(!m_manager->registrationMessage().has_value());
    QVERIFY(!HotKey::HotKeysController::box(*m_manager->hotKey())->carbonEventHotKey.has_value());

    QVERIFY(pressKeys("ctrl+alt+super+j"));
    QVERIFY(other.receivedPress(XKB_KEY_j, 3000));
    settle();
    QCOMPARE(m_toggles, 0);

    // The lock variants that were granted before the refusal were given back.
    QVERIFY(other.grab(XKB_KEY_j, kControlAltSuper | XCB_MOD_MASK_2));
    other.ungrab(XKB_KEY_j, kControlAltSuper | XCB_MOD_MASK_2);
    other.ungrab(XKB_KEY_j, kControlAltSuper);

    // Another combination still works.
    m_manager->setKeyCode(37); // L
    m_manager->rebind();
    QVERIFY(HotKey::HotKeysController::box(*m_manager->hotKey())->carbonEventHotKey.has_value());
    QVERIFY(pressKeys("ctrl+alt+super+l"));
    QTRY_COMPARE_WITH_TIMEOUT(m_toggles, 1, 3000);
    m_manager->setEnabled(false);
}

void TestHotkeyDesktop::releasesReachTheKeyUpHandler()
{
    int downs = 0;
    int ups = 0;
    auto hotKey = HotKey::HotKey::create(
        HotKey::KeyCombo(32, 0x1000 | 0x800), [&] { ++downs; }, [&] { ++ups; }); // ⌃⌥U
    QVERIFY(HotKey::HotKeysController::box(*hotKey)->carbonEventHotKey.has_value());

    QVERIFY(xdotool({QStringLiteral("keydown"), QStringLiteral("ctrl+alt+u")}));
    QTRY_COMPARE_WITH_TIMEOUT(downs, 1, 3000);
    QCOMPARE(ups, 0);
    QTest::qWait(1200); // long enough for the key to repeat
    QCOMPARE(downs, 1);
    QCOMPARE(ups, 0);
    QVERIFY(xdotool({QStringLiteral("keyup"), QStringLiteral("u")}));
    QTRY_COMPARE_WITH_TIMEOUT(ups, 1, 3000);
    QVERIFY(xdotool({QStringLiteral("keyup"), QStringLiteral("ctrl+alt")}));
    settle();
    QCOMPARE(downs, 1);
    QCOMPARE(ups, 1);

    // A paused hot key gives its key back.
    hotKey->setPaused(true);
    QVERIFY(pressKeys("ctrl+alt+u"));
    settle();
    QCOMPARE(downs, 1);
    hotKey->setPaused(false);
    QVERIFY(pressKeys("ctrl+alt+u"));
    QTRY_COMPARE_WITH_TIMEOUT(ups, 2, 3000);
    QCOMPARE(downs, 2);
}

QTEST_MAIN(TestHotkeyDesktop)
#include "tst_hotkey_desktop.moc"
