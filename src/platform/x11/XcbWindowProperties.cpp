// SPDX-License-Identifier: MIT
#include "platform/x11/XcbWindowProperties.h"

#include "platform/x11/XcbReply.h"

#include <cstring>

namespace Tessaline {
namespace {

// Property lengths are given in 32-bit units: 4 KiB of text, 4096 windows or atoms.
constexpr uint32_t kTextLength = 1024;
constexpr uint32_t kListLength = 4096;

constexpr const char* kAtomNames[] = {
    "_NET_CLIENT_LIST",    "_NET_CLIENT_LIST_STACKING",
    "_NET_ACTIVE_WINDOW",  "_NET_WM_PID",
    "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_STATE",       "_NET_WM_STATE_SKIP_TASKBAR",
    "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE",
    "UTF8_STRING",
};

xcb_get_property_cookie_t requestProperty(xcb_connection_t* connection, xcb_window_t window,
                                          xcb_atom_t property, xcb_atom_t type, uint32_t length)
{
    return xcb_get_property(connection, 0, window, property, type, 0, length);
}

using PropertyReply = XcbReply<xcb_get_property_reply_t>;

PropertyReply takeProperty(xcb_connection_t* connection, xcb_get_property_cookie_t cookie)
{
    return xcbReply(xcb_get_property_reply, connection, cookie);
}

QByteArray textOf(const PropertyReply& reply)
{
    if (!reply || reply->format != 8)
        return {};
    const int length = xcb_get_property_value_length(reply.get());
    return QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())), length);
}

QList<uint32_t> cardinalsOf(const PropertyReply& reply)
{
    QList<uint32_t> values;
    if (!reply || reply->format != 32)
        return values;
    const auto* data = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    const int count = xcb_get_property_value_length(reply.get()) / 4;
    values.reserve(count);
    for (int i = 0; i < count; ++i)
        values.append(data[i]);
    return values;
}

} // namespace

XcbWindowProperties::XcbWindowProperties(xcb_connection_t* connection, xcb_window_t root)
    : m_connection(connection), m_root(root)
{
    static_assert(std::size(kAtomNames) == AtomCount);
    xcb_intern_atom_cookie_t cookies[AtomCount];
    for (int i = 0; i < AtomCount; ++i) {
        cookies[i] = xcb_intern_atom(
            m_connection, 0, static_cast<uint16_t>(std::strlen(kAtomNames[i])), kAtomNames[i]);
    }
    for (int i = 0; i < AtomCount; ++i) {
        if (auto reply = xcbReply(xcb_intern_atom_reply, m_connection, cookies[i]))
            m_atoms[i] = reply->atom;
    }
}

QList<xcb_window_t> XcbWindowProperties::windowList(xcb_atom_t property) const
{
    const PropertyReply reply =
        takeProperty(m_connection,
                     requestProperty(m_connection, m_root, property, XCB_ATOM_WINDOW, kListLength));
    return cardinalsOf(reply);
}

QList<xcb_window_t> XcbWindowProperties::clientList() const
{
    return windowList(m_atoms[NetClientList]);
}

QList<xcb_window_t> XcbWindowProperties::stackingOrder() const
{
    return windowList(m_atoms[NetClientListStacking]);
}

xcb_window_t XcbWindowProperties::activeWindow() const
{
    const QList<xcb_window_t> windows = windowList(m_atoms[NetActiveWindow]);
    return windows.isEmpty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.first();
}

QList<ClientWindow> XcbWindowProperties::describe(const QList<xcb_window_t>& windows) const
{
    struct Cookies
    {
        xcb_get_property_cookie_t gtkId, kdeFile, wmClass, pid, type, state;
    };
    // Every request goes out before the first reply is awaited: one round trip in all.
    QList<Cookies> cookies;
    cookies.reserve(windows.size());
    for (xcb_window_t window : windows) {
        cookies.append(Cookies{
            requestProperty(m_connection, window, m_atoms[GtkApplicationId], XCB_ATOM_ANY,
                            kTextLength),
            requestProperty(m_connection, window, m_atoms[KdeNetWmDesktopFile], XCB_ATOM_ANY,
                            kTextLength),
            requestProperty(m_connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, kTextLength),
            requestProperty(m_connection, window, m_atoms[NetWmPid], XCB_ATOM_CARDINAL, 1),
            requestProperty(m_connection, window, m_atoms[NetWmWindowType], XCB_ATOM_ATOM,
                            kListLength),
            requestProperty(m_connection, window, m_atoms[NetWmState], XCB_ATOM_ATOM, kListLength),
        });
    }

    QList<ClientWindow> described;
    described.reserve(windows.size());
    for (qsizetype i = 0; i < windows.size(); ++i) {
        const Cookies& c = cookies[i];
        ClientWindow window;
        window.id = windows[i];
        window.gtkApplicationId = QString::fromUtf8(textOf(takeProperty(m_connection, c.gtkId)));
        window.kdeDesktopFile = QString::fromUtf8(textOf(takeProperty(m_connection, c.kdeFile)));

        // A missing property still gets a reply; no reply means the window is gone (it closed
        // after the list was read) and must not turn into a nameless application.
        const PropertyReply wmClassReply = takeProperty(m_connection, c.wmClass);
        const PropertyReply pidReply = takeProperty(m_connection, c.pid);
        const PropertyReply typeReply = takeProperty(m_connection, c.type);
        const PropertyReply stateReply = takeProperty(m_connection, c.state);
        if (!wmClassReply)
            continue;

        // WM_CLASS holds two NUL-terminated strings: the instance, then the class.
        const QList<QByteArray> wmClass = textOf(wmClassReply).split('\0');
        if (!wmClass.isEmpty())
            window.wmInstance = QString::fromLocal8Bit(wmClass.value(0));
        if (wmClass.size() > 1)
            window.wmClass = QString::fromLocal8Bit(wmClass.value(1));

        const QList<uint32_t> pid = cardinalsOf(pidReply);
        window.pid = pid.isEmpty() ? 0 : pid.first();

        const QList<uint32_t> types = cardinalsOf(typeReply);
        window.normalType = types.isEmpty() || types.contains(m_atoms[NetWmWindowTypeNormal]);
        const QList<uint32_t> states = cardinalsOf(stateReply);
        window.skipTaskbar = states.contains(m_atoms[NetWmStateSkipTaskbar]);
        described.append(window);
    }
    return described;
}

void XcbWindowProperties::requestActivation(xcb_window_t window, xcb_window_t currentlyActive) const
{
    xcb_client_message_event_t event;
    std::memset(&event, 0, sizeof event);
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = m_atoms[NetActiveWindow];
    event.data.data32[0] = 2; // source indication: a pager, which window managers obey
    event.data.data32[1] = XCB_CURRENT_TIME;
    event.data.data32[2] = currentlyActive;
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_connection);
}

} // namespace Tessaline
