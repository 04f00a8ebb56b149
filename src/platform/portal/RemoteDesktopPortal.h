// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace Tessaline {

/// The desktop's remote-desktop service as the key injector uses it: a session that, once the
/// desktop (and perhaps the user) agreed, takes key presses as keysyms. Every answer but the
/// keys' comes later, through a callback, since the desktop may first ask the user.
class RemoteDesktopPortal
{
public:
    /// Answer codes of a request: granted, cancelled by the user, failed for another reason.
    static constexpr uint responseSuccess = 0;
    static constexpr uint responseCancelled = 1;
    static constexpr uint responseOther = 2;

    /// The device type of a keyboard.
    static constexpr uint keyboardDevice = 1;
    /// Keeps the user's permission until the user takes it back.
    static constexpr uint persistUntilRevoked = 2;
    /// The first interface version whose sessions persist with restore tokens.
    static constexpr uint persistingVersion = 2;

    /// What a session asks the desktop for.
    struct DeviceSelection
    {
        uint types = keyboardDevice;
        /// 0 asks for nothing to persist (and is not sent).
        uint persistMode = 0;
        /// The token of an earlier session, to be restored without asking; empty for none.
        QString restoreToken;
    };

    /// The answer to a new session: its handle when `response` is responseSuccess.
    using SessionCallback = std::function<void(uint response, const QString& session)>;
    /// The answer to a device selection.
    using SelectCallback = std::function<void(uint response)>;
    /// The answer to a start: the device types granted and a token for the next session
    /// (empty when the desktop gave none).
    using StartCallback =
        std::function<void(uint response, uint devices, const QString& restoreToken)>;
    /// The desktop ended a session by itself.
    using ClosedCallback = std::function<void(const QString& session)>;

    virtual ~RemoteDesktopPortal() = default;

    /// The version of the portal's interface, read when the portal was found.
    virtual uint version() const = 0;
    virtual void createSession(SessionCallback callback) = 0;
    virtual void selectDevices(const QString& session, const DeviceSelection& selection,
                               SelectCallback callback) = 0;
    /// Starts the session: this is when the desktop may ask the user.
    virtual void start(const QString& session, StartCallback callback) = 0;
    /// Presses (`pressed` true) or releases the key of `keysym` in a started session, without
    /// waiting. The keys reach the desktop in the order they were sent.
    virtual void notifyKeysym(const QString& session, quint32 keysym, bool pressed) = 0;
    virtual void closeSession(const QString& session) = 0;
    virtual void setClosedCallback(ClosedCallback callback) = 0;
};

} // namespace Tessaline
