// SPDX-License-Identifier: MIT
#include "hotkey/HotKey.h"

#include "hotkey/HotKeysController.h"

namespace HotKey {

HotKey::HotKey(KeyCombo keyCombo, Handler keyDownHandler, Handler keyUpHandler)
    : m_identifier(QUuid::createUuid()), m_keyCombo(keyCombo),
      m_keyDownHandler(std::move(keyDownHandler)), m_keyUpHandler(std::move(keyUpHandler))
{}

std::shared_ptr<HotKey> HotKey::create(KeyCombo keyCombo, Handler keyDownHandler,
                                       Handler keyUpHandler)
{
    std::shared_ptr<HotKey> hotKey(
        new HotKey(keyCombo, std::move(keyDownHandler), std::move(keyUpHandler)));
    HotKeysController::registerHotKey(hotKey);
    return hotKey;
}

std::shared_ptr<HotKey> HotKey::create(quint32 carbonKeyCode, quint32 carbonModifiers,
                                       Handler keyDownHandler, Handler keyUpHandler)
{
    return create(KeyCombo(carbonKeyCode, carbonModifiers), std::move(keyDownHandler),
                  std::move(keyUpHandler));
}

std::shared_ptr<HotKey> HotKey::create(Key key, ModifierFlags modifiers, Handler keyDownHandler,
                                       Handler keyUpHandler)
{
    return create(KeyCombo(key, modifiers), std::move(keyDownHandler), std::move(keyUpHandler));
}

HotKey::~HotKey()
{
    HotKeysController::unregisterHotKey(*this);
}

void HotKey::setPaused(bool paused)
{
    m_isPaused = paused;
    if (paused)
        HotKeysController::unregisterHotKey(*this);
    else
        HotKeysController::registerHotKey(shared_from_this());
}

} // namespace HotKey
