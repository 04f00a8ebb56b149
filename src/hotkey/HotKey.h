// SPDX-License-Identifier: MIT
#pragma once

#include "hotkey/KeyCombo.h"

#include <QUuid>

#include <functional>
#include <memory>

namespace HotKey {

/// One system-wide hot key. It is registered from its creation until it is paused or destroyed;
/// the registry holds it only weakly, so dropping the last owner unregisters it.
class HotKey : public std::enable_shared_from_this<HotKey>
{
public:
    using Handler = std::function<void()>;
    /// Called with a status when the system answers the registration late (see
    /// HotKeyService::RegistrationHandler).
    using RegistrationHandler = std::function<void(int status)>;

    /// Creates and registers a hot key for `keyCombo`.
    static std::shared_ptr<HotKey> create(KeyCombo keyCombo, Handler keyDownHandler = {},
                                          Handler keyUpHandler = {});
    /// Creates and registers a hot key for a Carbon key code and Carbon modifier bits.
    static std::shared_ptr<HotKey> create(quint32 carbonKeyCode, quint32 carbonModifiers,
                                          Handler keyDownHandler = {}, Handler keyUpHandler = {});
    /// Creates and registers a hot key for a key and platform modifier flags.
    static std::shared_ptr<HotKey> create(Key key, ModifierFlags modifiers,
                                          Handler keyDownHandler = {}, Handler keyUpHandler = {});

    ~HotKey();
    HotKey(const HotKey&) = delete;
    HotKey& operator=(const HotKey&) = delete;

    const QUuid& identifier() const { return m_identifier; }
    const KeyCombo& keyCombo() const { return m_keyCombo; }

    const Handler& keyDownHandler() const { return m_keyDownHandler; }
    void setKeyDownHandler(Handler handler) { m_keyDownHandler = std::move(handler); }
    const Handler& keyUpHandler() const { return m_keyUpHandler; }
    void setKeyUpHandler(Handler handler) { m_keyUpHandler = std::move(handler); }

    const RegistrationHandler& registrationHandler() const { return m_registrationHandler; }
    void setRegistrationHandler(RegistrationHandler handler)
    {
        m_registrationHandler = std::move(handler);
    }

    bool isPaused() const { return m_isPaused; }
    /// Pausing unregisters; unpausing registers again, under a new id.
    void setPaused(bool paused);

private:
    HotKey(KeyCombo keyCombo, Handler keyDownHandler, Handler keyUpHandler);

    QUuid m_identifier;
    KeyCombo m_keyCombo;
    Handler m_keyDownHandler;
    Handler m_keyUpHandler;
    RegistrationHandler m_registrationHandler;
    bool m_isPaused = false;
};

} // namespace HotKey
