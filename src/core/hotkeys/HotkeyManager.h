// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ChordText.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace HotKey {
class HotKey;
}

namespace Tessaline {

class DefaultsStore;
class KeyNamePreference;
class Scheduler;

/// The user's global hotkey that toggles the HUD: whether it is on, its key and modifiers. The
/// choice lives in the user defaults; `rebind()` registers it with the hot-key module.
class HotkeyManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY isEnabledChanged)
    Q_PROPERTY(quint32 keyCode READ keyCode WRITE setKeyCode NOTIFY keyCodeChanged)
    Q_PROPERTY(quint32 carbonModifiers READ carbonModifiers WRITE setCarbonModifiers NOTIFY
                   carbonModifiersChanged)
    Q_PROPERTY(
        QString registrationMessage READ registrationMessageText NOTIFY registrationMessageChanged)
    Q_PROPERTY(
        bool hasRegistrationMessage READ hasRegistrationMessage NOTIFY registrationMessageChanged)
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)
    Q_PROPERTY(bool sessionGrabsKeys READ sessionGrabsKeys NOTIFY sessionGrabsKeysChanged)

public:
    static constexpr auto enabledKey = "Hotkey.enabled";
    static constexpr auto keyCodeKey = "Hotkey.keyCode";
    static constexpr auto modifiersKey = "Hotkey.modifiers";

    static constexpr quint32 defaultKeyCode = 40;     // K
    static constexpr quint32 defaultModifiers = 6400; // control + option + command

    static QString setMessagePrefix();      // "HUD hotkey set to "
    static QString chooseModifierMessage(); // recording without a modifier
    static QString disabledMessage();       // after the settings screen's disable button

    /// Reads the three defaults; registers nothing until `rebind()`. `toggle` runs on the main
    /// thread, one event-loop turn after the hotkey is pressed.
    HotkeyManager(DefaultsStore& defaults, Scheduler& scheduler, std::function<void()> toggle,
                  QObject* parent = nullptr);
    ~HotkeyManager() override;

    bool isEnabled() const { return m_isEnabled; }
    /// Stores the value, writes "Hotkey.enabled" and rebinds.
    void setEnabled(bool enabled);

    quint32 keyCode() const { return m_keyCode; }
    /// Stores the value and writes "Hotkey.keyCode"; takes effect at the next rebind.
    void setKeyCode(quint32 keyCode);

    quint32 carbonModifiers() const { return m_carbonModifiers; }
    /// Stores the value and writes "Hotkey.modifiers"; takes effect at the next rebind.
    void setCarbonModifiers(quint32 carbonModifiers);

    const std::optional<QString>& registrationMessage() const { return m_registrationMessage; }
    QString registrationMessageText() const { return m_registrationMessage.value_or(QString()); }
    bool hasRegistrationMessage() const { return m_registrationMessage.has_value(); }
    void setRegistrationMessage(std::optional<QString> message);

    /// Whether this session lets Tessaline take a key system-wide at all (not on a Wayland
    /// desktop without a global-shortcuts service, nor once the desktop refused the hotkey).
    bool sessionGrabsKeys() const;

    /// The registered hot key; none while disabled.
    const std::shared_ptr<HotKey::HotKey>& hotKey() const { return m_hotKey; }

    /// Drops the current hot key and, when enabled, registers the current combination.
    Q_INVOKABLE
    void rebind();
    /// Turns the hotkey off from the settings screen: unregisters it and says so.
    Q_INVOKABLE
    void disable();

    /// The modifiers' symbols followed by the key's name, e.g. "⌃⌥⌘K", drawn in the key-name
    /// style when one is set ("Ctrl+Alt+Super+K").
    QString displayText() const;
    /// How `displayText` draws the combination; none keeps the symbols. A change redraws the
    /// display text and a "HUD hotkey set to" message.
    void setKeyNameStyle(std::optional<KeyNameStyle> style);
    /// Draws in the style `keyNames` holds, now and whenever the user changes it.
    void followKeyNames(const KeyNamePreference& keyNames);

    /// Carbon bits of platform modifier flags (command, option, control, shift only).
    static quint32 carbonModifiersFromFlags(quint64 modifierFlags);
    /// "⌃⌥⇧⌘" symbols of the present Carbon bits, always in this order.
    static QString displayModifiers(quint32 carbonModifiers);
    /// The name of a key code shown to the user; "Key <code>" for codes without one.
    static QString displayKey(quint16 keyCode);

Q_SIGNALS:
    void isEnabledChanged();
    void keyCodeChanged();
    void carbonModifiersChanged();
    void registrationMessageChanged();
    void displayTextChanged();
    /// The desktop answered a registration late, which may change `sessionGrabsKeys`.
    void sessionGrabsKeysChanged();

private:
    DefaultsStore& m_defaults;
    Scheduler& m_scheduler;
    bool m_isEnabled = false;
    quint32 m_keyCode = defaultKeyCode;
    quint32 m_carbonModifiers = defaultModifiers;
    std::optional<QString> m_registrationMessage;
    std::optional<KeyNameStyle> m_keyNameStyle;
    std::shared_ptr<HotKey::HotKey> m_hotKey;
    std::function<void()> m_toggle;
};

} // namespace Tessaline
