// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemKeyMonitor.h"

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <optional>

namespace Tessaline {

/// Turns raw key presses and releases, which carry only a key code, into the key-down and
/// system-defined events of SystemKeyMonitor. Raw events carry no modifier state, so the
/// translator follows it itself from the presses and releases it sees.
class RawKeyTranslator
{
public:
    struct KeymapDeleter
    {
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    };
    struct StateDeleter
    {
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };
    using KeymapPtr = std::unique_ptr<xkb_keymap, KeymapDeleter>;
    using StatePtr = std::unique_ptr<xkb_state, StateDeleter>;

    /// Starts from `state` (the keyboard's current modifiers and locks) or, when it is null,
    /// from a state with nothing held.
    RawKeyTranslator(KeymapPtr keymap, StatePtr state = nullptr);

    /// Replaces the keymap after the keyboard mapping changed. Held modifiers are kept from
    /// `state` when given, else forgotten.
    void setKeymap(KeymapPtr keymap, StatePtr state = nullptr);

    /// A key went down (or repeats while held). Modifier keys give no event; media, volume and
    /// brightness keys give a system-defined event; every other key a key-down.
    std::optional<SystemKeyEvent> keyPressed(xkb_keycode_t key, bool repeat = false);
    /// A key went up. Only the system keys report their release.
    std::optional<SystemKeyEvent> keyReleased(xkb_keycode_t key);

    /// The modifiers held now, as SystemKeyEvent::ModifierFlag bits.
    quint64 modifierFlags() const;

    /// The auxiliary key type of a keysym, if it is one of the system keys.
    static std::optional<int> auxKeyType(xkb_keysym_t keysym);

private:
    xkb_keysym_t keysym(xkb_keycode_t key) const;
    std::optional<QString> charactersIgnoringModifiers(xkb_keycode_t key) const;
    QString keyNameIgnoringModifiers(xkb_keycode_t key) const;
    const xkb_keysym_t* firstLevelSyms(xkb_keycode_t key, int* count) const;
    bool modifierActive(const char* name) const;

    KeymapPtr m_keymap;
    StatePtr m_state;
};

} // namespace Tessaline
