// SPDX-License-Identifier: MIT
#include "hotkey/HotKeysController.h"

#include "hotkey/HotKey.h"

namespace HotKey {
namespace {

struct Registry
{
    std::map<quint32, HotKeyBox> hotKeys;
    quint32 hotKeysCount = 0;
    bool eventHandlerInstalled = false;
    HotKeyService* service = nullptr;
};

Registry& registry()
{
    static Registry instance;
    return instance;
}

} // namespace

void HotKeysController::setService(HotKeyService* service)
{
    Registry& state = registry();
    state.service = service;
    state.eventHandlerInstalled = false;
    if (service != nullptr)
        service->installRegistrationHandler(&HotKeysController::handleRegistration);
}

HotKeyService* HotKeysController::service()
{
    return registry().service;
}

void HotKeysController::registerHotKey(const std::shared_ptr<HotKey>& hotKey)
{
    if (!hotKey)
        return;
    Registry& state = registry();
    if (box(*hotKey) != nullptr)
        return;

    quint32 id = 0;
    if (__builtin_add_overflow(state.hotKeysCount, 1u, &id))
        qFatal("HotKeysController: hot-key ids are exhausted");
    state.hotKeysCount = id;

    // The box is stored before the system is asked, so a refused key keeps its entry.
    HotKeyBox& entry = state.hotKeys[id];
    entry = HotKeyBox{hotKey->identifier(), hotKey, id, std::nullopt};

    if (state.service == nullptr)
        return;
    const KeyCombo combo = hotKey->keyCombo();
    const HotKeyService::Registration result = state.service->registerHotKey(
        combo.carbonKeyCode, combo.carbonModifiers, HotKeyId{eventHotKeySignature, id});
    if (!result)
        return;

    const auto stored = state.hotKeys.find(id);
    if (stored != state.hotKeys.end())
        stored->second.carbonEventHotKey = *result;
    if (!state.eventHandlerInstalled) {
        state.service->installEventHandler(&HotKeysController::handleEvent);
        state.eventHandlerInstalled = true;
    }
}

void HotKeysController::unregisterHotKey(const HotKey& hotKey)
{
    Registry& state = registry();
    for (auto it = state.hotKeys.begin(); it != state.hotKeys.end(); ++it) {
        if (it->second.identifier != hotKey.identifier())
            continue;
        if (it->second.carbonEventHotKey && state.service != nullptr)
            state.service->unregisterHotKey(*it->second.carbonEventHotKey);
        it->second.hotKey.reset();
        state.hotKeys.erase(it);
        return;
    }
}

std::shared_ptr<HotKey> HotKeysController::hotKey(quint32 id)
{
    Registry& state = registry();
    const auto it = state.hotKeys.find(id);
    if (it != state.hotKeys.end()) {
        if (std::shared_ptr<HotKey> alive = it->second.hotKey.lock())
            return alive;
    }
    state.hotKeys.erase(id);
    return nullptr;
}

const HotKeyBox* HotKeysController::box(const HotKey& hotKey)
{
    for (const auto& [id, entry] : registry().hotKeys) {
        if (entry.identifier == hotKey.identifier())
            return &entry;
    }
    return nullptr;
}

int HotKeysController::handleEvent(const HotKeyEvent* event)
{
    if (event == nullptr)
        return Status::eventNotHandled;
    if (event->idReadStatus != Status::noError)
        return event->idReadStatus;
    if (event->hotKeyId.signature != eventHotKeySignature)
        return Status::eventNotHandled;
    const std::shared_ptr<HotKey> target = hotKey(event->hotKeyId.id);
    if (!target)
        return Status::eventNotHandled;

    HotKey::Handler handler;
    switch (event->kind) {
    case HotKeyEvent::pressed:
        handler = target->keyDownHandler();
        break;
    case HotKeyEvent::released:
        handler = target->keyUpHandler();
        break;
    default:
        return Status::eventNotHandled;
    }
    if (target->isPaused() || !handler)
        return Status::eventNotHandled;
    handler();
    return Status::noError;
}

void HotKeysController::handleRegistration(HotKeyId id, int status)
{
    if (id.signature != eventHotKeySignature)
        return;
    Registry& state = registry();
    const auto it = state.hotKeys.find(id.id);
    if (it == state.hotKeys.end())
        return;
    // The service has already let go of a refused key; the entry keeps no reference to it.
    if (status != Status::noError)
        it->second.carbonEventHotKey.reset();
    const std::shared_ptr<HotKey> target = it->second.hotKey.lock();
    if (target && target->registrationHandler())
        target->registrationHandler()(status);
}

const std::map<quint32, HotKeyBox>& HotKeysController::hotKeys()
{
    return registry().hotKeys;
}

quint32 HotKeysController::hotKeysCount()
{
    return registry().hotKeysCount;
}

bool HotKeysController::isEventHandlerInstalled()
{
    return registry().eventHandlerInstalled;
}

} // namespace HotKey
