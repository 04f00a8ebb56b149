// SPDX-License-Identifier: MIT
// The platform factory on a real X server: it picks the X11 backend, whose hot keys really grab
// keys from other clients and whose window hints reach the window manager.
#include "platform/PlatformServices.h"
#include "platform/x11/XcbReply.h"

#include <QGuiApplication>
#include <QTest>
#include <QWindow>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <memory>

using namespace Tessaline;

namespace {

constexpr quint16 kControlAltSuper = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
// K with control, option and command, as the hot-key module stores it.
constexpr quint32 kCarbonK = 40;
constexpr quint32 kCarbonControlOptionCommand = 6400;

/// A second X client, standing for another application.
class OtherClient
{
public:
    OtherClient() : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }
    ~OtherClient() { xcb_disconnect(m_connection); }
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    bool isConnected() const { return xcb_connection_has_error(m_connection) == 0; }

    /// Grabs K with the modifiers; false when another client holds it. A granted grab is given
    /// back at once.
    bool canGrabK(quint16 modifiers)
    {
        xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(m_connection);
        const XcbReply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, XKB_KEY_k));
        xcb_key_symbols_free(symbols);
        if (!codes)
            return false;
        const xcb_keycode_t keycode = codes.get()[0];
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(
            m_connection, xcb_grab_key_checked(m_connection, 1, m_root, modifiers, keycode,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        if (error)
            return false;
        xcb_ungrab_key(m_connection, keycode, m_root, modifiers);
        xcb_flush(m_connection);
        return true;
    }

    xcb_atom_t atom(const char* name)
    {
        const auto reply =
            xcbReply(xcb_intern_atom_reply, m_connection,
                     xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(qstrlen(name)), name));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    /// The atoms of the window's _NET_WM_STATE.
    QList<xcb_atom_t> windowState(xcb_window_t window)
    {
        const auto reply = xcbReply(
            xcb_get_property_reply, m_connection,
            xcb_get_property(m_connection, 0, window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 0, 32));
        QList<xcb_atom_t> atoms;
        if (!reply || reply->format != 32)
            return atoms;
        const auto* values = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
        const int count = xcb_get_property_value_length(reply.get()) / 4;
        for (int i = 0; i < count; ++i)
            atoms.append(values[i]);
        return atoms;
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_root = 0;
};

} // namespace

class TestPlatformDesktop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onX11HotKeysGrabFromOtherClients();
    void onX11TheHUDIsKeptOutOfTheTaskbar();
    void onX11RawKeysCanBeWatched();
};

void TestPlatformDesktop::onX11HotKeysGrabFromOtherClients()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    OtherClient other;
    QVERIFY(other.isConnected());
    QVERIFY(other.canGrabK(kControlAltSuper));

    const std::unique_ptr<PlatformServices> services = createPlatformServices();
    const auto registration =
        services->hotKeys->registerHotKey(kCarbonK, kCarbonControlOptionCommand, {0x4D72766B, 1});
    QVERIFY(registration.has_value());
    QVERIFY(!other.canGrabK(kControlAltSuper));

    services->hotKeys->unregisterHotKey(*registration);
    QVERIFY(other.canGrabK(kControlAltSuper));
}

void TestPlatformDesktop::onX11TheHUDIsKeptOutOfTheTaskbar()
{
    const std::unique_ptr<PlatformServices> services = createPlatformServices();
    OtherClient other;
    const xcb_atom_t skipTaskbar = other.atom("_NET_WM_STATE_SKIP_TASKBAR");
    const xcb_atom_t skipPager = other.atom("_NET_WM_STATE_SKIP_PAGER");
    QVERIFY(skipTaskbar != XCB_ATOM_NONE);

    QWindow window;
    window.resize(200, 120);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto id = static_cast<xcb_window_t>(window.winId());
    QVERIFY(!other.windowState(id).contains(skipTaskbar));

    services->windowHints->skipTaskbar(window);
    QTRY_VERIFY_WITH_TIMEOUT(other.windowState(id).contains(skipTaskbar), 3000);
    QVERIFY(other.windowState(id).contains(skipPager));
}

void TestPlatformDesktop::onX11RawKeysCanBeWatched()
{
    const std::unique_ptr<PlatformServices> services = createPlatformServices();
    QVERIFY(services->keyMonitor->start([](const SystemKeyEvent&) {}));
    services->keyMonitor->stop();
}

QTEST_MAIN(TestPlatformDesktop)
#include "tst_platform_desktop.moc"
