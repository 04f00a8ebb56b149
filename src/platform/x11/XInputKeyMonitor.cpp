// SPDX-License-Identifier: MIT
#include "platform/x11/XInputKeyMonitor.h"

#include "LogCategories.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbReply.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace Tessaline {
namespace {

// Raw key presses and releases, the two events this monitor selects.
constexpr std::uint32_t kRawKeyMask =
    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;

// XKB event types (xcb/xkb.h cannot be included from C++: it names a field "explicit").
constexpr std::uint8_t kXkbNewKeyboardNotify = 0;
constexpr std::uint8_t kXkbMapNotify = 1;

// An event mask for one device, as XISelectEvents takes it: the header and one mask word.
struct DeviceEventMask
{
    xcb_input_event_mask_t header;
    std::uint32_t bits;
};

} // namespace

XInputKeyMonitor::XInputKeyMonitor() = default;

XInputKeyMonitor::~XInputKeyMonitor()
{
    stop();
}

bool XInputKeyMonitor::connect()
{
    if (m_connection)
        return true;
    xcb_connection_t* connection = X11Connection::connection();
    if (!connection)
        return false;

    const xcb_query_extension_reply_t* xinput = xcb_get_extension_data(connection, &xcb_input_id);
    if (!xinput || !xinput->present) {
        qCWarning(lcRawKeys) << "the X server has no XInput extension";
        return false;
    }
    std::uint8_t xkbBaseEvent = 0;
    if (!xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &xkbBaseEvent, nullptr)) {
        qCWarning(lcRawKeys) << "the X server has no usable XKB extension";
        return false;
    }
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    if (device < 0)
        return false;
    const xcb_window_t root = X11Connection::rootWindow(connection);
    if (root == XCB_NONE)
        return false;

    m_context.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!m_context)
        return false;
    m_connection = connection;
    m_root = root;
    m_xinputOpcode = xinput->major_opcode;
    m_xkbBaseEvent = xkbBaseEvent;
    m_keyboardDevice = device;
    return true;
}

bool XInputKeyMonitor::loadKeymap()
{
    RawKeyTranslator::KeymapPtr keymap(xkb_x11_keymap_new_from_device(
        m_context.get(), m_connection, m_keyboardDevice, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap)
        return false;
    // The server's state holds the locks (Caps Lock, Num Lock) and anything held right now.
    RawKeyTranslator::StatePtr state(
        xkb_x11_state_new_from_device(keymap.get(), m_connection, m_keyboardDevice));
    if (m_translator)
        m_translator->setKeymap(std::move(keymap), std::move(state));
    else
        m_translator.emplace(std::move(keymap), std::move(state));
    return true;
}

bool XInputKeyMonitor::selectRawKeys(bool enable)
{
    // XISelectEvents replaces the whole mask of one window and device for this client, and Qt
    // shares the connection: keep whatever else is selected on the root for all master
    // devices and change only the raw key bits.
    std::uint32_t bits = 0;
    const auto cookie = xcb_input_xi_get_selected_events(m_connection, m_root);
    XcbReply<xcb_input_xi_get_selected_events_reply_t> reply(
        xcb_input_xi_get_selected_events_reply(m_connection, cookie, nullptr));
    if (reply) {
        for (auto it = xcb_input_xi_get_selected_events_masks_iterator(reply.get()); it.rem;
             xcb_input_event_mask_next(&it)) {
            if (it.data->deviceid != XCB_INPUT_DEVICE_ALL_MASTER || it.data->mask_len < 1)
                continue;
            bits = xcb_input_event_mask_mask(it.data)[0];
        }
    }
    bits = enable ? (bits | kRawKeyMask) : (bits & ~kRawKeyMask);

    DeviceEventMask mask{};
    mask.header.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    mask.header.mask_len = 1;
    mask.bits = bits;
    const xcb_void_cookie_t select =
        xcb_input_xi_select_events_checked(m_connection, m_root, 1, &mask.header);
    XcbReply<xcb_generic_error_t> error(xcb_request_check(m_connection, select));
    if (error) {
        qCWarning(lcRawKeys) << "selecting raw key events failed with X error" << error->error_code;
        return false;
    }
    return true;
}

bool XInputKeyMonitor::start(Handler handler)
{
    if (m_running) {
        m_handler = std::move(handler);
        return true;
    }
    if (!connect() || !loadKeymap() || !selectRawKeys(true))
        return false;
    m_handler = std::move(handler);
    QCoreApplication::instance()->installNativeEventFilter(this);
    m_running = true;
    return true;
}

void XInputKeyMonitor::stop()
{
    m_handler = nullptr;
    if (!m_running)
        return;
    m_running = false;
    // Qt's connection lives as long as the application object: without it there is nothing
    // left to deselect.
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    app->removeNativeEventFilter(this);
    selectRawKeys(false);
}

bool XInputKeyMonitor::ownWindowHasFocus() const
{
    // Qt knows the focus window only while one of this application's windows has the input
    // focus; the coach panel never takes it.
    return QGuiApplication::focusWindow() != nullptr;
}

bool XInputKeyMonitor::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t" || !m_running)
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const std::uint8_t responseType = event->response_type & 0x7F;

    if (responseType == XCB_GE_GENERIC) {
        const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event);
        if (generic->extension != m_xinputOpcode)
            return false;
        if (generic->event_type != XCB_INPUT_RAW_KEY_PRESS &&
            generic->event_type != XCB_INPUT_RAW_KEY_RELEASE)
            return false;
        // Press and release events share their layout; the fields read here lie in the first
        // 32 bytes, which xcb never moves.
        const auto* raw = reinterpret_cast<const xcb_input_raw_key_press_event_t*>(event);
        handleRawKey(generic->event_type == XCB_INPUT_RAW_KEY_PRESS, raw->detail,
                     (raw->flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0);
        return false;
    }

    if (responseType == m_xkbBaseEvent) {
        // XKB events carry their own type in the second byte. A new keyboard or a changed
        // mapping invalidates the keymap the translator reads keysyms from.
        const std::uint8_t xkbType = reinterpret_cast<const std::uint8_t*>(event)[1];
        if (xkbType == kXkbNewKeyboardNotify || xkbType == kXkbMapNotify)
            loadKeymap();
    }
    return false;
}

void XInputKeyMonitor::handleRawKey(bool press, std::uint32_t keycode, bool repeat)
{
    if (!m_translator)
        return;
    // The translator sees every key, so that modifiers pressed in our own windows are
    // still counted when the focus moves elsewhere.
    const std::optional<SystemKeyEvent> event =
        press ? m_translator->keyPressed(keycode, repeat) : m_translator->keyReleased(keycode);
    if (!event || !m_handler || ownWindowHasFocus())
        return;
    // Copied: the handler may stop this monitor.
    const Handler handler = m_handler;
    handler(*event);
}

} // namespace Tessaline
