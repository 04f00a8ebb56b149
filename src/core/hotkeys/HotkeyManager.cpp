// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyManager.h"

#include "platform/Scheduler.h"
#include "settings/DefaultsStore.h"
#include "settings/KeyNamePreference.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>
#include <hotkey/ModifierFlags.h>

#include <QPointer>

namespace Tessaline {
namespace {

quint32 storedUInt32(const DefaultsStore& defaults, const char* key, quint32 fallback)
{
    const std::optional<qint64> stored = defaults.integerValue(QLatin1String(key));
    if (!stored)
        return fallback;
    if (*stored < 0 || *stored > 0xFFFFFFFFll)
        qFatal("HotkeyManager: the stored %s does not fit in 32 bits unsigned", key);
    return static_cast<quint32>(*stored);
}

} // namespace

QString HotkeyManager::setMessagePrefix()
{
    return QStringLiteral("HUD hotkey set to ");
}

QString HotkeyManager::chooseModifierMessage()
{
    return QStringLiteral("Choose at least one modifier, like Ctrl or Alt.");
}

QString HotkeyManager::disabledMessage()
{
    return QStringLiteral("HUD hotkey disabled. Use the tray icon any time.");
}

HotkeyManager::HotkeyManager(DefaultsStore& defaults, Scheduler& scheduler,
                             std::function<void()> toggle, QObject* parent)
    : QObject(parent), m_defaults(defaults), m_scheduler(scheduler), m_toggle(std::move(toggle))
{
    m_isEnabled = m_defaults.boolValue(QLatin1String(enabledKey)).value_or(false);
    m_keyCode = storedUInt32(m_defaults, keyCodeKey, defaultKeyCode);
    m_carbonModifiers = storedUInt32(m_defaults, modifiersKey, defaultModifiers);
}

HotkeyManager::~HotkeyManager() = default;

void HotkeyManager::setEnabled(bool enabled)
{
    const bool changed = m_isEnabled != enabled;
    m_isEnabled = enabled;
    m_defaults.setBool(QLatin1String(enabledKey), enabled);
    if (changed)
        Q_EMIT isEnabledChanged();
    rebind();
}

void HotkeyManager::setKeyCode(quint32 keyCode)
{
    const bool changed = m_keyCode != keyCode;
    m_keyCode = keyCode;
    m_defaults.setInteger(QLatin1String(keyCodeKey), keyCode);
    if (changed) {
        Q_EMIT keyCodeChanged();
        Q_EMIT displayTextChanged();
    }
}

void HotkeyManager::setCarbonModifiers(quint32 carbonModifiers)
{
    const bool changed = m_carbonModifiers != carbonModifiers;
    m_carbonModifiers = carbonModifiers;
    m_defaults.setInteger(QLatin1String(modifiersKey), carbonModifiers);
    if (changed) {
        Q_EMIT carbonModifiersChanged();
        Q_EMIT displayTextChanged();
    }
}

void HotkeyManager::setRegistrationMessage(std::optional<QString> message)
{
    if (m_registrationMessage == message)
        return;
    m_registrationMessage = std::move(message);
    Q_EMIT registrationMessageChanged();
}

void HotkeyManager::rebind()
{
    m_hotKey.reset();
    if (!m_isEnabled)
        return;

    std::shared_ptr<HotKey::HotKey> hotKey = HotKey::HotKey::create(m_keyCode, m_carbonModifiers);
    // The press is handled one event-loop turn later, and only while this manager exists.
    QPointer<HotkeyManager> self(this);
    hotKey->setKeyDownHandler([self] {
        if (!self)
            return;
        self->m_scheduler.schedule(0, self, [self] {
            if (self && self->m_toggle)
                self->m_toggle();
        });
    });
    // A desktop that asks the user answers after registration; a refusal shows the hint.
    hotKey->setRegistrationHandler([self](int) {
        if (self)
            Q_EMIT self->sessionGrabsKeysChanged();
    });
    m_hotKey = std::move(hotKey);
}

bool HotkeyManager::sessionGrabsKeys() const
{
    const HotKey::HotKeyService* service = HotKey::HotKeysController::service();
    return service == nullptr || service->grabsKeys();
}

void HotkeyManager::disable()
{
    setEnabled(false);
    m_hotKey.reset();
    setRegistrationMessage(disabledMessage());
}

QString HotkeyManager::displayText() const
{
    if (m_keyCode > 0xFFFF)
        qFatal("HotkeyManager: key code %u does not fit in 16 bits", m_keyCode);
    const QString symbols =
        displayModifiers(m_carbonModifiers) + displayKey(static_cast<quint16>(m_keyCode));
    return m_keyNameStyle ? ChordText::display(symbols, *m_keyNameStyle) : symbols;
}

void HotkeyManager::followKeyNames(const KeyNamePreference& keyNames)
{
    setKeyNameStyle(keyNames.style());
    connect(&keyNames, &KeyNamePreference::styleChanged, this,
            [this, &keyNames] { setKeyNameStyle(keyNames.style()); });
}

void HotkeyManager::setKeyNameStyle(std::optional<KeyNameStyle> style)
{
    if (style == m_keyNameStyle)
        return;
    const QString before = displayText();
    m_keyNameStyle = style;
    Q_EMIT displayTextChanged();
    if (m_registrationMessage == setMessagePrefix() + before + QLatin1Char('.'))
        setRegistrationMessage(setMessagePrefix() + displayText() + QLatin1Char('.'));
}

quint32 HotkeyManager::carbonModifiersFromFlags(quint64 modifierFlags)
{
    return HotKey::ModifierFlags(modifierFlags).carbonFlags();
}

QString HotkeyManager::displayModifiers(quint32 carbonModifiers)
{
    QString text;
    if (carbonModifiers & HotKey::CarbonModifier::control)
        text += QChar(0x2303); // ⌃
    if (carbonModifiers & HotKey::CarbonModifier::option)
        text += QChar(0x2325); // ⌥
    if (carbonModifiers & HotKey::CarbonModifier::shift)
        text += QChar(0x21E7); // ⇧
    if (carbonModifiers & HotKey::CarbonModifier::command)
        text += QChar(0x2318); // ⌘
    return text;
}

QString HotkeyManager::displayKey(quint16 keyCode)
{
    if (const std::optional<HotKey::Key> key = HotKey::keyFromCarbonKeyCode(keyCode)) {
        if (std::optional<QString> name = HotKey::chordKeyName(*key))
            return *name;
    }
    return QStringLiteral("Key %1").arg(keyCode);
}

} // namespace Tessaline
