// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

struct wl_display;

namespace Tessaline {

/// The compositor's list of application windows ("toplevels"), for Wayland compositors that
/// offer the foreign-toplevel management protocol (wlroots-based ones such as sway, and KDE
/// Plasma). It sees every application with a window, also those that are not on the
/// accessibility bus, and which one the compositor has activated. Tessaline talks to the
/// compositor on a connection of its own, so that it works the same in the app and the command
/// line tool; without the protocol (GNOME) or outside Wayland the list stays empty.
class ForeignToplevelList final : public QObject
{
    Q_OBJECT
public:
    struct Toplevel
    {
        /// The application id the window gave the compositor, usually its desktop-file id.
        QString appId;
        QString title;
        bool activated = false;
    };

    explicit ForeignToplevelList(QObject* parent = nullptr);
    ~ForeignToplevelList() override;

    /// True while the compositor serves the protocol.
    bool isAvailable() const;
    /// The windows the compositor announced, oldest first.
    QList<Toplevel> toplevels() const;
    /// The application id of the window the compositor has activated, if any.
    std::optional<QString> activatedAppId() const;
    /// Asks the compositor to activate the most recently announced window of `appId`.
    bool activate(const QString& appId);

signals:
    /// Another application's window was activated (or none is active any more).
    void activatedAppChanged();

private:
    struct Handle;
    struct Connection;
    void dispatch();
    void committed();

    std::unique_ptr<Connection> m_connection;
    std::optional<QString> m_lastActivated;
};

} // namespace Tessaline
