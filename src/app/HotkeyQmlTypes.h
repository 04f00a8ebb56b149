// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyManager.h"
#include "hotkeys/HotkeyRecorder.h"
#include "settings/KeyNamePreference.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Tessaline {

// The core's hotkey and key-name objects under their own names in the "Tessaline" module, so
// that the settings views declare them with their types. The application creates them, never a
// view.

struct HotkeyManagerQmlType
{
    Q_GADGET
    QML_FOREIGN(Tessaline::HotkeyManager)
    QML_NAMED_ELEMENT(HotkeyManager)
    QML_UNCREATABLE("HotkeyManager is created by the application")
};

struct HotkeyRecorderQmlType
{
    Q_GADGET
    QML_FOREIGN(Tessaline::HotkeyRecorder)
    QML_NAMED_ELEMENT(HotkeyRecorder)
    QML_UNCREATABLE("HotkeyRecorder is created with the settings")
};

struct KeyNamePreferenceQmlType
{
    Q_GADGET
    QML_FOREIGN(Tessaline::KeyNamePreference)
    QML_NAMED_ELEMENT(KeyNamePreference)
    QML_UNCREATABLE("KeyNamePreference is created by the application")
};

} // namespace Tessaline
