// SPDX-License-Identifier: MIT
#pragma once

#include "hotkey/HotKeyService.h"

#include <QUuid>

#include <map>
#include <memory>
#include <optional>

namespace HotKey {

class HotKey;

/// One entry of the registry: which hot key, under which id, with which system reference.
struct HotKeyBox
{
    QUuid identifier;
    std::weak_ptr<HotKey> hotKey;
    quint32 carbonHotKeyID = 0;
    std::optional<HotKeyService::Reference> carbonEventHotKey;
};

/// The process-wide registry of hot keys and the dispatcher of their events. It has no
/// instances; all of its state is shared and used on the main thread only.
class HotKeysController
{
public:
    HotKeysController() = delete;

    /// The signature of every id this registry hands out: the four-character code "Mrvk".
    static constexpr quint32 eventHotKeySignature =
        (quint32('M') << 24) | (quint32('r') << 16) | (quint32('v') << 8) | quint32('k');

    /// The system service hot keys are registered with. A new service starts without the
    /// event handler, which is installed at its first successful registration; the handler of
    /// late registration answers is installed at once.
    static void setService(HotKeyService* service);
    static HotKeyService* service();

    static void registerHotKey(const std::shared_ptr<HotKey>& hotKey);
    static void unregisterHotKey(const HotKey& hotKey);
    /// The live hot key registered under `id`; a dead or missing entry is removed.
    static std::shared_ptr<HotKey> hotKey(quint32 id);
    static const HotKeyBox* box(const HotKey& hotKey);

    /// Dispatches a system event to the hot key it names; returns a status.
    static int handleEvent(const HotKeyEvent* event);
    /// Takes the system's late answer to a registration: a refusal leaves the entry without a
    /// reference, as a registration refused at once does; either way the hot key is told.
    static void handleRegistration(HotKeyId id, int status);

    static const std::map<quint32, HotKeyBox>& hotKeys();
    static quint32 hotKeysCount();
    static bool isEventHandlerInstalled();
};

} // namespace HotKey
