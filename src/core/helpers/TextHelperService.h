// SPDX-License-Identifier: MIT
#pragma once

#include "context/TrackedApp.h"
#include "helpers/TextHelperAction.h"

#include <QObject>

#include <functional>
#include <optional>

namespace Tessaline {

class AccessibilityTrust;
class AlertPresenter;
class Clipboard;
class KeyInjector;
class Scheduler;
class TextInserter;
class Workspace;

/// Types a snippet or the clipboard's plain text into the application the user was working in:
/// puts the text on the clipboard, brings that application to the front, posts the paste chord
/// 0.12 s later and puts the clipboard's previous text back 0.8 s after the call. Where the
/// session can insert text directly (a TextInserter), the text goes straight into the focused
/// field 0.12 s after the call and the clipboard is used only when that fails; if the paste
/// chord cannot be posted then either, the text stays on the clipboard for the user to paste
/// and the service keeps one line saying so (statusText).
class TextHelperService : public QObject
{
    Q_OBJECT
public:
    /// Returns the application the user was last working in.
    using TargetAppProvider = std::function<TrackedApp()>;

    /// Delay from a paste to its keystroke.
    static constexpr int kKeystrokeDelayMs = 120;
    /// Delay from a paste to the restore of the clipboard (not from the keystroke).
    static constexpr int kRestoreDelayMs = 800;

    TextHelperService(TargetAppProvider targetAppProvider, Workspace& workspace,
                      Clipboard& clipboard, KeyInjector& keyInjector,
                      AccessibilityTrust& accessibilityTrust, AlertPresenter& alerts,
                      Scheduler& scheduler, QObject* parent = nullptr);

    /// Runs one helper: checks the permission first and does nothing more without it.
    void perform(TextHelperAction action);

    /// True when Tessaline may post keystrokes. Otherwise explains in an alert, offers to open
    /// the permission prompt, and returns false: the user runs the helper again later.
    bool ensureAccessibilityPermission();

    /// Pastes the clipboard's text as plain text; an empty clipboard gets an alert instead.
    void pastePlainText();

    /// Pastes `text` into the target application and restores the clipboard afterwards.
    void paste(const QString& text);

    /// Inserts text directly into focused fields from now on; nullptr goes back to the
    /// clipboard and the paste chord. The inserter must outlive the service.
    void setTextInserter(TextInserter* inserter) { m_textInserter = inserter; }

    /// The line shown when a helper's text could neither be inserted nor pasted.
    static QString notPastedText();
    /// Why the last helper typed nothing, until it is cleared or a helper types its text.
    std::optional<QString> statusText() const { return m_status; }
    void clearStatus();

signals:
    void statusChanged();

private:
    void setStatus(std::optional<QString> status);

    TargetAppProvider m_targetAppProvider;
    Workspace& m_workspace;
    Clipboard& m_clipboard;
    KeyInjector& m_keyInjector;
    AccessibilityTrust& m_accessibilityTrust;
    AlertPresenter& m_alerts;
    Scheduler& m_scheduler;
    TextInserter* m_textInserter = nullptr;
    std::optional<QString> m_status;
};

} // namespace Tessaline
