// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"
#include "platform/portal/RemoteDesktopPortal.h"

#include <QString>

#include <functional>
#include <memory>

namespace Tessaline {

/// Types keys on Wayland through the desktop portal's remote-desktop session, which asks the
/// user whether Tessaline may use the keyboard.
///
/// The session is started the first time a key is to be typed (or at launch, with start(),
/// when the desktop kept the permission from an earlier session): most text fields take the
/// helpers' text through the accessibility bus, so most users are never asked, and nobody is
/// asked at every login. Until the session runs, and for good once the user or the desktop
/// refused it, every post answers at once that nothing was posted: the text helper then leaves
/// its text on the clipboard and says so, and a typed chord fails with its reason. Posts are
/// never queued for later: keys typed after the user answered a dialog would go to whatever
/// window has the focus by then, not to the one the user chose, so a post is either typed now
/// or not at all, and the text is never lost.
///
/// Where the portal keeps permissions (interface version 2 and later), the session asks to
/// keep its permission until the user revokes it and passes the token of the last session, so
/// that the user is asked once, not at every start; the token the desktop hands back replaces
/// the stored one.
class PortalKeyInjector final : public KeyInjector
{
public:
    /// Where the restore token lives between starts (the user's settings).
    struct TokenStore
    {
        std::function<QString()> load;
        std::function<void(const QString& token)> save;
    };

    /// How far the session is.
    enum class State
    {
        /// Nothing asked yet.
        Idle,
        Starting,
        Running,
        /// Refused by the user, failed, without a keyboard, or ended by the desktop.
        Refused,
    };

    PortalKeyInjector(std::unique_ptr<RemoteDesktopPortal> portal, TokenStore tokens);
    ~PortalKeyInjector() override;

    /// Asks the desktop for the keyboard session now, unless it was asked already.
    void start();

    bool postPasteChord() override;
    /// Starts the session when nothing was asked yet (the post itself is then not typed).
    /// Sends each chord's keysyms: modifiers down, the key down and up, modifiers up (last
    /// first). A key that names no keysym is reported and nothing is sent.
    KeyPostResult postKeys(const QList<KeyStroke>& strokes) override;

    State state() const { return m_state; }

private:
    void sessionCreated(uint response, const QString& session);
    void devicesSelected(uint response);
    void started(uint response, uint devices, const QString& restoreToken);
    void refuse(const char* why, uint response);

    std::unique_ptr<RemoteDesktopPortal> m_portal;
    TokenStore m_tokens;
    State m_state = State::Idle;
    QString m_session;
};

} // namespace Tessaline
