// SPDX-License-Identifier: MIT
// The platform factory on a real X server: it picks the X11 backend, whose hot keys really grab
// keys from other clients and whose window hints reach the window manager.
#include "platform/PlatformServices.h"
#include "platform/x11/XcbReply.h"

#include <QGuiApplication>
#include <QRect>
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

    /// Takes the screen's tray selection as a tray manager does and publishes `foreground`
    /// (16 bits a channel) as the first of its icon colours.
    bool ownTrayWithForeground(quint16 red, quint16 green, quint16 blue)
    {
        const xcb_window_t owner = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, owner, m_root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        // Foreground, error, warning and success colours.
        const uint32_t colors[12] = {red,    green,  blue, 0xffff, 0,      0,
                                     0xffff, 0xffff, 0,    0,      0xffff, 0};
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, owner,
                            atom("_NET_SYSTEM_TRAY_COLORS"), XCB_ATOM_CARDINAL, 32, 12, colors);
        xcb_set_selection_owner(m_connection, owner, atom("_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
        const auto reply =
            xcbReply(xcb_get_selection_owner_reply, m_connection,
                     xcb_get_selection_owner(m_connection, atom("_NET_SYSTEM_TRAY_S0")));
        return reply && reply->owner == owner;
    }

    /// Shows a plain rectangle of `rgb` at `geometry`, above everything, as a panel would be.
    void showPanel(const QRect& geometry, uint32_t rgb)
    {
        const xcb_window_t panel = xcb_generate_id(m_connection);
        const uint32_t values[] = {rgb, 1};
        xcb_create_window(
            m_connection, XCB_COPY_FROM_PARENT, panel, m_root, static_cast<int16_t>(geometry.x()),
            static_cast<int16_t>(geometry.y()), static_cast<uint16_t>(geometry.width()),
            static_cast<uint16_t>(geometry.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
            XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
        xcb_map_window(m_connection, panel);
        xcb_flush(m_connection);
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
    void onX11TheTrayGlyphFollowsThePanel();
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

void TestPlatformDesktop::onX11TheTrayGlyphFollowsThePanel()
{
    const std::unique_ptr<PlatformServices> services = createPlatformServices();
    const TrayAppearance& tray = *services->trayAppearance;
    OtherClient other;
    QVERIFY(!tray.trayForeground()); // no tray manager yet

    // Without colours from the tray, the panel's own pixels decide: light on dark, dark on light.
    const QRect icon(630, 410, 24, 24);
    other.showPanel(QRect(600, 400, 200, 40), 0x202028);
    QTRY_VERIFY_WITH_TIMEOUT(tray.panelColor(icon) == (TrayAppearance::Rgb{0x20, 0x20, 0x28}),
                             3000);
    QCOMPARE(tray.glyphColor(icon), TrayAppearance::kLightGlyph);
    other.showPanel(QRect(600, 400, 200, 40), 0xf0f0f0);
    QTRY_COMPARE_WITH_TIMEOUT(tray.glyphColor(icon), TrayAppearance::kDarkGlyph, 3000);

    // A tray manager that names its icons' colour is followed.
    QVERIFY(other.ownTrayWithForeground(0xffff, 0x8000, 0x0000));
    QCOMPARE(tray.trayForeground(), std::optional(TrayAppearance::Rgb{0xff, 0x80, 0x00}));
    QCOMPARE(tray.glyphColor(icon), (TrayAppearance::Rgb{0xff, 0x80, 0x00}));
}

QTEST_MAIN(TestPlatformDesktop)
#include "tst_platform_desktop.moc"
