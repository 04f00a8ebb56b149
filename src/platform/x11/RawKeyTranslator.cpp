// SPDX-License-Identifier: MIT
#include "platform/x11/RawKeyTranslator.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-names.h>

#include <array>

namespace Tessaline {
namespace {

// Keys that only change the modifier state. They produce flag changes, never a key-down.
bool isModifierKeysym(xkb_keysym_t sym)
{
    return (sym >= XKB_KEY_Shift_L && sym <= XKB_KEY_Hyper_R) ||
           (sym >= XKB_KEY_ISO_Lock && sym <= XKB_KEY_ISO_Level5_Lock) ||
           sym == XKB_KEY_Mode_switch || sym == XKB_KEY_Num_Lock;
}

} // namespace

RawKeyTranslator::RawKeyTranslator(KeymapPtr keymap, StatePtr state)
{
    setKeymap(std::move(keymap), std::move(state));
}

void RawKeyTranslator::setKeymap(KeymapPtr keymap, StatePtr state)
{
    m_keymap = std::move(keymap);
    m_state =
        state ? std::move(state) : StatePtr(m_keymap ? xkb_state_new(m_keymap.get()) : nullptr);
}

std::optional<int> RawKeyTranslator::auxKeyType(xkb_keysym_t keysym)
{
    switch (keysym) {
    case XKB_KEY_XF86AudioRaiseVolume:
        return SystemKeyEvent::SoundUp;
    case XKB_KEY_XF86AudioLowerVolume:
        return SystemKeyEvent::SoundDown;
    case XKB_KEY_XF86MonBrightnessUp:
        return SystemKeyEvent::BrightnessUp;
    case XKB_KEY_XF86MonBrightnessDown:
        return SystemKeyEvent::BrightnessDown;
    case XKB_KEY_XF86AudioMute:
        return SystemKeyEvent::Mute;
    // Keyboards with one play/pause key send either keysym for it.
    case XKB_KEY_XF86AudioPlay:
    case XKB_KEY_XF86AudioPause:
        return SystemKeyEvent::Play;
    case XKB_KEY_XF86AudioNext:
        return SystemKeyEvent::Next;
    case XKB_KEY_XF86AudioPrev:
        return SystemKeyEvent::Previous;
    default:
        return std::nullopt;
    }
}

xkb_keysym_t RawKeyTranslator::keysym(xkb_keycode_t key) const
{
    return m_state ? xkb_state_key_get_one_sym(m_state.get(), key) : XKB_KEY_NoSymbol;
}

bool RawKeyTranslator::modifierActive(const char* name) const
{
    return m_state &&
           xkb_state_mod_name_is_active(m_state.get(), name, XKB_STATE_MODS_EFFECTIVE) > 0;
}

quint64 RawKeyTranslator::modifierFlags() const
{
    quint64 flags = 0;
    if (modifierActive(XKB_MOD_NAME_CAPS))
        flags |= SystemKeyEvent::CapsLock;
    if (modifierActive(XKB_MOD_NAME_SHIFT))
        flags |= SystemKeyEvent::Shift;
    if (modifierActive(XKB_MOD_NAME_CTRL))
        flags |= SystemKeyEvent::Control;
    if (modifierActive(XKB_MOD_NAME_ALT))
        flags |= SystemKeyEvent::Option;
    if (modifierActive(XKB_MOD_NAME_LOGO))
        flags |= SystemKeyEvent::Command;
    return flags;
}

const xkb_keysym_t* RawKeyTranslator::firstLevelSyms(xkb_keycode_t key, int* count) const
{
    // The first shift level of the key in the active layout: what the key gives with no
    // modifier held, so Super + Shift + 4 reads "4" and Alt + Print reads Print, not Sys_Req.
    *count = 0;
    const xkb_layout_index_t layout = xkb_state_key_get_layout(m_state.get(), key);
    if (layout == XKB_LAYOUT_INVALID)
        return nullptr;
    const xkb_keysym_t* syms = nullptr;
    *count = xkb_keymap_key_get_syms_by_level(m_keymap.get(), key, layout, 0, &syms);
    return syms;
}

std::optional<QString> RawKeyTranslator::charactersIgnoringModifiers(xkb_keycode_t key) const
{
    int count = 0;
    const xkb_keysym_t* syms = firstLevelSyms(key, &count);
    QString characters;
    std::array<char, 8> buffer{};
    for (int i = 0; i < count; ++i) {
        const int size = xkb_keysym_to_utf8(syms[i], buffer.data(), buffer.size());
        if (size > 1)
            characters += QString::fromUtf8(buffer.data(), size - 1);
    }
    if (characters.isEmpty())
        return std::nullopt;
    return characters;
}

QString RawKeyTranslator::keyNameIgnoringModifiers(xkb_keycode_t key) const
{
    int count = 0;
    const xkb_keysym_t* syms = firstLevelSyms(key, &count);
    if (count < 1)
        return {};
    std::array<char, 64> buffer{};
    const int size = xkb_keysym_get_name(syms[0], buffer.data(), buffer.size());
    if (size <= 0 || size >= static_cast<int>(buffer.size()))
        return {};
    return QString::fromLatin1(buffer.data(), size);
}

std::optional<SystemKeyEvent> RawKeyTranslator::keyPressed(xkb_keycode_t key, bool repeat)
{
    if (!m_state)
        return std::nullopt;
    const xkb_keysym_t sym = keysym(key);
    std::optional<SystemKeyEvent> event;
    if (const std::optional<int> type = auxKeyType(sym))
        event = SystemKeyEvent::auxControlButton(*type, SystemKeyEvent::kKeyStateDown, repeat);
    else if (sym != XKB_KEY_NoSymbol && !isModifierKeysym(sym))
        event = SystemKeyEvent::keyDown(modifierFlags(), charactersIgnoringModifiers(key),
                                        keyNameIgnoringModifiers(key));
    // The event carries the modifiers held before this key; a repeat changes nothing.
    if (!repeat)
        xkb_state_update_key(m_state.get(), key, XKB_KEY_DOWN);
    return event;
}

std::optional<SystemKeyEvent> RawKeyTranslator::keyReleased(xkb_keycode_t key)
{
    if (!m_state)
        return std::nullopt;
    const std::optional<int> type = auxKeyType(keysym(key));
    xkb_state_update_key(m_state.get(), key, XKB_KEY_UP);
    if (!type)
        return std::nullopt;
    return SystemKeyEvent::auxControlButton(*type, SystemKeyEvent::kKeyStateUp);
}

} // namespace Tessaline
