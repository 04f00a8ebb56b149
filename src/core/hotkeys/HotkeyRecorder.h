// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyKeyEvent.h"

#include <QObject>
#include <QPointer>
#include <QString>

namespace Tessaline {

class HotkeyManager;

/// The rules of the hotkey recorder field: what it shows and what a captured key press does to
/// the manager. The view only forwards its key presses here.
class HotkeyRecorder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)

public:
    /// The flags a recording keeps: shift, control, option and command.
    static constexpr quint64 relevantModifierMask = 0x1E0000;

    static QString idleText(); // "Click to record"

    explicit HotkeyRecorder(HotkeyManager& manager, QObject* parent = nullptr);

    /// The manager's display text while the hotkey is enabled, otherwise the idle text.
    QString displayText() const;

    /// Applies one captured key press to the manager.
    void capture(const HotkeyKeyEvent& event);

    /// Applies a Qt key press (key, modifiers, X keycode). Presses of modifier keys alone and of
    /// keys without a Carbon code are ignored; returns whether the press was captured.
    Q_INVOKABLE
    bool captureQtKey(int qtKey, int qtModifiers, quint32 nativeScanCode = 0);

    /// The capture rules on their own, for a manager without a recorder.
    static void capture(HotkeyManager& manager, const HotkeyKeyEvent& event);

Q_SIGNALS:
    void displayTextChanged();

private:
    HotkeyManager& m_manager;
};

} // namespace Tessaline
