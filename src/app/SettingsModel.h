// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyManager.h"
#include "hotkeys/HotkeyRecorder.h"
#include "settings/AutostartEntry.h"
#include "settings/KeyNamePreference.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace Tessaline {

class AccessibilityTrust;
class CoachTipController;
class VaultStore;

/// What the settings and welcome windows show and do: the hotkey (through its manager and
/// recorder), the accessibility permission, starting at login, and the vault file with import,
/// export and reset.
class SettingsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("SettingsModel is created by the application")
    Q_PROPERTY(Tessaline::HotkeyManager* hotkeyManager READ hotkeyManager CONSTANT)
    Q_PROPERTY(Tessaline::HotkeyRecorder* recorder READ recorder CONSTANT)
    Q_PROPERTY(Tessaline::KeyNamePreference* keyNames READ keyNames CONSTANT)
    Q_PROPERTY(bool accessibilityEnabled READ accessibilityEnabled NOTIFY accessibilityChanged)
    Q_PROPERTY(QString dataFilePath READ dataFilePath CONSTANT)
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged)
    Q_PROPERTY(bool startAtLogin READ startAtLogin NOTIFY startAtLoginChanged)
    Q_PROPERTY(QString startAtLoginMessage READ startAtLoginMessage NOTIFY startAtLoginChanged)
    Q_PROPERTY(QString coachTipsNote READ coachTipsNote NOTIFY coachTipsNoteChanged)

public:
    SettingsModel(VaultStore& store, HotkeyManager* hotkeyManager, KeyNamePreference& keyNames,
                  AccessibilityTrust& trust, QObject* parent = nullptr);
    ~SettingsModel() override;

    HotkeyManager* hotkeyManager() const { return m_hotkeyManager.data(); }
    HotkeyRecorder* recorder() const { return m_recorder; }
    KeyNamePreference* keyNames() const { return &m_keyNames; }
    bool accessibilityEnabled() const { return m_accessibilityEnabled; }
    QString dataFilePath() const;
    QString lastError() const;
    bool startAtLogin() const { return m_startAtLogin; }
    QString startAtLoginMessage() const { return m_startAtLoginMessage; }
    /// Why the coach tips are off, when the desktop keeps their keys from Tessaline.
    QString coachTipsNote() const;
    /// Follows the coach tips' state for coachTipsNote.
    void watchCoachTips(CoachTipController& coachTips);

    /// Looks at the permission again (it can change outside Tessaline).
    Q_INVOKABLE
    void refreshAccessibility();
    /// Asks the desktop to turn accessibility on.
    Q_INVOKABLE
    void requestAccessibility();
    /// Shows the vault file in the file manager.
    Q_INVOKABLE
    void showFile();
    /// Asks for a JSON file and replaces the vault with it.
    Q_INVOKABLE
    void importJson();
    /// Asks where to save and writes the vault there as JSON.
    Q_INVOKABLE
    void exportJson();
    /// Puts the bundled pack back, at once.
    Q_INVOKABLE
    void resetToSeed();
    /// Looks at the autostart entry again (the user may add or remove it by hand).
    Q_INVOKABLE
    void refreshStartAtLogin();
    /// Writes or removes the autostart entry; a failure is kept in startAtLoginMessage.
    Q_INVOKABLE
    void setStartAtLogin(bool enabled);

signals:
    void accessibilityChanged();
    void lastErrorChanged();
    void startAtLoginChanged();
    void coachTipsNoteChanged();

private:
    QPointer<VaultStore> m_store;
    QPointer<HotkeyManager> m_hotkeyManager;
    QPointer<CoachTipController> m_coachTips;
    HotkeyRecorder* m_recorder = nullptr;
    KeyNamePreference& m_keyNames;
    AccessibilityTrust& m_trust;
    bool m_accessibilityEnabled = false;
    AutostartEntry m_autostart;
    bool m_startAtLogin = false;
    QString m_startAtLoginMessage;
};

} // namespace Tessaline
