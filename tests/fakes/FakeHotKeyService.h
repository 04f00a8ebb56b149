// SPDX-License-Identifier: MIT
#pragma once

#include <hotkey/HotKeyService.h>

#include <QList>

#include <functional>
#include <map>

namespace Tessaline::Testing {

/// A hot-key service that records what it is asked and lets the test decide each registration
/// and deliver key presses the way the system would.
class FakeHotKeyService final : public HotKey::HotKeyService
{
public:
    /// What grabsKeys() answers: false stands for a session without global keys.
    bool grabs = true;
    bool grabsKeys() const override { return grabs; }

    struct Call
    {
        quint32 keyCode;
        quint32 modifiers;
        HotKey::HotKeyId id;
    };
    struct Active
    {
        quint32 keyCode;
        quint32 modifiers;
        HotKey::HotKeyId id;
    };

    /// Decides each registration; by default every one succeeds with a fresh reference.
    std::function<Registration(quint32, quint32, HotKey::HotKeyId)> decide;

    QList<Call> registrations;
    QList<Reference> unregistrations;
    std::map<Reference, Active> active;
    EventHandler handler;
    int handlerInstalls = 0;
    RegistrationHandler registrationHandler;
    std::optional<QList<QVariantMap>> symbolic;
    std::optional<HotKey::Menu> menu;

    Registration registerHotKey(quint32 keyCode, quint32 modifiers, HotKey::HotKeyId id) override
    {
        registrations.append({keyCode, modifiers, id});
        Registration result =
            decide ? decide(keyCode, modifiers, id) : Registration(m_nextReference++);
        if (result)
            active[*result] = {keyCode, modifiers, id};
        return result;
    }

    void unregisterHotKey(Reference reference) override
    {
        unregistrations.append(reference);
        active.erase(reference);
    }

    void installEventHandler(EventHandler newHandler) override
    {
        handler = std::move(newHandler);
        ++handlerInstalls;
    }

    void installRegistrationHandler(RegistrationHandler newHandler) override
    {
        registrationHandler = std::move(newHandler);
    }

    /// Answers a registration late, as a desktop that asked the user does: a refusal also
    /// takes the key back.
    void answerLate(HotKey::HotKeyId id, int status)
    {
        if (status != HotKey::Status::noError) {
            for (auto it = active.begin(); it != active.end(); ++it) {
                if (it->second.id == id) {
                    active.erase(it);
                    break;
                }
            }
        }
        if (registrationHandler)
            registrationHandler(id, status);
    }

    std::optional<QList<QVariantMap>> symbolicHotKeys() override { return symbolic; }
    std::optional<HotKey::Menu> mainMenu() override { return menu; }

    /// Delivers an event for `id` to the installed handler; eventNotHandled without one.
    int deliver(HotKey::HotKeyId id, quint32 kind = HotKey::HotKeyEvent::pressed)
    {
        if (!handler)
            return HotKey::Status::eventNotHandled;
        const HotKey::HotKeyEvent event{kind, id, HotKey::Status::noError};
        return handler(&event);
    }

    /// Presses a combination: every active registration of it gets the event, as the system
    /// would deliver it. Returns how many events were handled.
    int press(quint32 keyCode, quint32 modifiers, quint32 kind = HotKey::HotKeyEvent::pressed)
    {
        int handled = 0;
        const auto snapshot = active;
        for (const auto& [reference, entry] : snapshot) {
            if (entry.keyCode == keyCode && entry.modifiers == modifiers &&
                deliver(entry.id, kind) == HotKey::Status::noError)
                ++handled;
        }
        return handled;
    }

private:
    Reference m_nextReference = 1;
};

} // namespace Tessaline::Testing
