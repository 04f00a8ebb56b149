// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyRecorder.h"

#include "hotkeys/HotkeyManager.h"
#include "hotkeys/QtKeyMapping.h"

namespace Tessaline {

QString HotkeyRecorder::idleText()
{
    return QStringLiteral("Click to record");
}

HotkeyRecorder::HotkeyRecorder(HotkeyManager& manager, QObject* parent)
    : QObject(parent), m_manager(manager)
{
    connect(&m_manager, &HotkeyManager::isEnabledChanged, this,
            &HotkeyRecorder::displayTextChanged);
    connect(&m_manager, &HotkeyManager::displayTextChanged, this,
            &HotkeyRecorder::displayTextChanged);
}

QString HotkeyRecorder::displayText() const
{
    return m_manager.isEnabled() ? m_manager.displayText() : idleText();
}

void HotkeyRecorder::capture(const HotkeyKeyEvent& event)
{
    capture(m_manager, event);
}

bool HotkeyRecorder::captureQtKey(int qtKey, int qtModifiers, quint32 nativeScanCode)
{
    if (QtKeyMapping::isModifierKey(qtKey))
        return false;
    const auto event =
        QtKeyMapping::keyEvent(qtKey, Qt::KeyboardModifiers::fromInt(qtModifiers), nativeScanCode);
    if (!event)
        return false;
    capture(*event);
    return true;
}

void HotkeyRecorder::capture(HotkeyManager& manager, const HotkeyKeyEvent& event)
{
    const quint64 kept = event.modifierFlags & relevantModifierMask;
    if (kept == 0) {
        manager.setRegistrationMessage(HotkeyManager::chooseModifierMessage());
        return;
    }
    manager.setKeyCode(event.keyCode);
    manager.setCarbonModifiers(HotkeyManager::carbonModifiersFromFlags(kept));
    manager.setEnabled(true);
    manager.setRegistrationMessage(HotkeyManager::setMessagePrefix() + manager.displayText() +
                                   QLatin1Char('.'));
    manager.rebind();
}

} // namespace Tessaline
