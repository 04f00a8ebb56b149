// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

#include <memory>

namespace Tessaline {

/// Types keys in a Wayland session through the compositor's virtual-keyboard protocol
/// (zwp_virtual_keyboard_v1, offered by sway and other wlroots compositors), on a connection
/// of its own. The virtual keyboard carries a keymap of its own, compiled by xkbcommon from
/// the XKB_DEFAULT_* settings (US English without them); a key that is not on it is reported
/// as not on the layout and nothing is typed. The modifiers' state is sent with every change,
/// since the compositor takes it from the keyboard rather than working it out.
class VirtualKeyboardInjector final : public KeyInjector
{
public:
    /// A keyboard made through the compositor, or nothing when it offers none (or no Wayland
    /// compositor answers).
    static std::unique_ptr<VirtualKeyboardInjector> create();
    ~VirtualKeyboardInjector() override;

    bool postPasteChord() override;
    KeyPostResult postKeys(const QList<KeyStroke>& strokes) override;

private:
    struct Keyboard;
    explicit VirtualKeyboardInjector(std::unique_ptr<Keyboard> keyboard);

    std::unique_ptr<Keyboard> m_keyboard;
};

} // namespace Tessaline
