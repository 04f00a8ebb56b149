// SPDX-License-Identifier: MIT
#include "platform/x11/X11Workspace.h"

#include "LogCategories.h"
#include "platform/x11/WindowAppResolver.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbReply.h"
#include "platform/x11/XcbWindowProperties.h"

#include <QCoreApplication>

namespace Tessaline {
namespace {

/// How many recently active windows are remembered for activate().
constexpr qsizetype kActivationMemory = 64;

} // namespace

X11Workspace::X11Workspace(const DesktopEntryLookup& entries, QObject* parent) : Workspace(parent)
{
    m_resolver = std::make_unique<WindowAppResolver>(entries, QCoreApplication::applicationPid(),
                                                     ownBundleIdentifier().value_or(QString()));

    xcb_connection_t* connection = X11Connection::connection();
    if (!connection) {
        qCInfo(lcX11) << "not an X11 session: the workspace stays empty";
        return;
    }
    m_properties =
        std::make_unique<XcbWindowProperties>(connection, X11Connection::rootWindow(connection));
    m_lastActive = m_properties->activeWindow();
    if (m_lastActive)
        m_activationOrder.append(m_lastActive);
    // Qt already listens to property changes on the root window; the filter only reads them.
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11Workspace::~X11Workspace()
{
    if (m_properties && QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool X11Workspace::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    // The high bit only says that another client sent the event.
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto* notify = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    if (notify->window != m_properties->root() || notify->atom != m_properties->activeWindowAtom())
        return false;
    qCDebug(lcX11) << "active window property changed";
    // Read the new value after the filter returns; bursts (the window manager clears the
    // property between two windows) collapse into one read.
    if (!m_checkPending) {
        m_checkPending = true;
        QMetaObject::invokeMethod(this, &X11Workspace::checkActiveWindow, Qt::QueuedConnection);
    }
    return false;
}

void X11Workspace::checkActiveWindow()
{
    m_checkPending = false;
    const quint32 active = m_properties->activeWindow();
    qCDebug(lcX11) << "active window" << Qt::hex << active << "last" << m_lastActive;
    if (active == XCB_WINDOW_NONE || active == m_lastActive)
        return;
    m_lastActive = active;
    noteActivation(active);
    emit applicationActivated(applicationOfWindow(active));
}

void X11Workspace::noteActivation(quint32 window)
{
    m_activationOrder.removeAll(window);
    m_activationOrder.prepend(window);
    if (m_activationOrder.size() > kActivationMemory)
        m_activationOrder.resize(kActivationMemory);
}

QList<WindowApp> X11Workspace::windowApps() const
{
    if (!m_properties)
        return {};
    return m_resolver->applications(m_properties->describe(m_properties->clientList()));
}

std::optional<RunningApplication> X11Workspace::applicationOfWindow(quint32 window) const
{
    if (!m_properties || window == XCB_WINDOW_NONE)
        return std::nullopt;
    for (const WindowApp& app : windowApps()) {
        if (app.windows.contains(window))
            return app.application;
    }
    // A window the manager does not list (yet): judge it on its own.
    const QList<WindowApp> alone = m_resolver->applications(m_properties->describe({window}));
    if (alone.isEmpty())
        return std::nullopt;
    return alone.first().application;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const
{
    if (!m_properties)
        return std::nullopt;
    return applicationOfWindow(m_properties->activeWindow());
}

QList<RunningApplication> X11Workspace::runningApplications() const
{
    QList<RunningApplication> apps;
    const QList<WindowApp> windowApplications = windowApps();
    apps.reserve(windowApplications.size());
    for (const WindowApp& app : windowApplications)
        apps.append(app.application);
    return apps;
}

bool X11Workspace::activate(const RunningApplication& application)
{
    if (!m_properties)
        return false;
    const QList<WindowApp> apps = windowApps();
    const WindowApp* target = nullptr;
    for (const WindowApp& app : apps) {
        const RunningApplication& candidate = app.application;
        const bool sameProcess =
            application.processId > 0
                ? candidate.processId == application.processId
                : candidate.processId == 0 && candidate.localizedName == application.localizedName;
        if (sameProcess && candidate.bundleIdentifier == application.bundleIdentifier) {
            target = &app;
            break;
        }
    }
    if (!target || target->windows.isEmpty())
        return false;

    // The window the user had in front most recently; else the topmost one of the app.
    quint32 window = XCB_WINDOW_NONE;
    for (quint32 recent : std::as_const(m_activationOrder)) {
        if (target->windows.contains(recent)) {
            window = recent;
            break;
        }
    }
    if (window == XCB_WINDOW_NONE) {
        const QList<xcb_window_t> stacking = m_properties->stackingOrder();
        for (auto it = stacking.crbegin(); it != stacking.crend(); ++it) {
            if (target->windows.contains(*it)) {
                window = *it;
                break;
            }
        }
    }
    if (window == XCB_WINDOW_NONE)
        window = target->windows.last();
    m_properties->requestActivation(window, m_properties->activeWindow());
    return true;
}

} // namespace Tessaline
