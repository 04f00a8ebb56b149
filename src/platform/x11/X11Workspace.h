// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

#include <QAbstractNativeEventFilter>
#include <QList>

#include <memory>

namespace Tessaline {

class DesktopEntryLookup;
class WindowAppResolver;
class XcbWindowProperties;
struct WindowApp;

/// The workspace of an X11 desktop with an EWMH window manager: applications are the owners of
/// the managed windows (_NET_CLIENT_LIST), the frontmost one owns _NET_ACTIVE_WINDOW, and an
/// activation is a change of that property. Works on Qt's own xcb connection; under any other
/// Qt platform (Wayland, offscreen) it reports no applications and no activations.
class X11Workspace final : public Workspace, private QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    /// `entries` must outlive the workspace.
    explicit X11Workspace(const DesktopEntryLookup& entries, QObject* parent = nullptr);
    ~X11Workspace() override;

    /// True when Qt runs on X11 and the workspace can see windows.
    bool isAvailable() const { return m_properties != nullptr; }

    std::optional<RunningApplication> frontmostApplication() const override;
    QList<RunningApplication> runningApplications() const override;
    using Workspace::runningApplications;
    bool activate(const RunningApplication& application) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void checkActiveWindow();
    QList<WindowApp> windowApps() const;
    std::optional<RunningApplication> applicationOfWindow(quint32 window) const;
    void noteActivation(quint32 window);

    std::unique_ptr<XcbWindowProperties> m_properties;
    std::unique_ptr<WindowAppResolver> m_resolver;
    /// The last active window seen, to drop repeated notifications.
    quint32 m_lastActive = 0;
    bool m_checkPending = false;
    /// Windows from the most recently active on, for activate().
    QList<quint32> m_activationOrder;
};

} // namespace Tessaline
