// SPDX-License-Identifier: MIT
#include "helpers/TextHelperService.h"

#include "platform/AccessibilityTrust.h"
#include "platform/AlertPresenter.h"
#include "platform/Clipboard.h"
#include "platform/KeyInjector.h"
#include "platform/Scheduler.h"
#include "platform/TextInserter.h"
#include "platform/Workspace.h"

namespace Tessaline {

TextHelperService::TextHelperService(TargetAppProvider targetAppProvider, Workspace& workspace,
                                     Clipboard& clipboard, KeyInjector& keyInjector,
                                     AccessibilityTrust& accessibilityTrust, AlertPresenter& alerts,
                                     Scheduler& scheduler, QObject* parent)
    : QObject(parent), m_targetAppProvider(std::move(targetAppProvider)), m_workspace(workspace),
      m_clipboard(clipboard), m_keyInjector(keyInjector), m_accessibilityTrust(accessibilityTrust),
      m_alerts(alerts), m_scheduler(scheduler)
{}

void TextHelperService::perform(TextHelperAction action)
{
    if (!ensureAccessibilityPermission())
        return;
    if (const auto text = TextHelperActions::snippet(action))
        paste(*text);
    else
        pastePlainText();
}

bool TextHelperService::ensureAccessibilityPermission()
{
    if (m_accessibilityTrust.isTrusted())
        return true;
    const int response = m_alerts.runModal(
        QStringLiteral("Accessibility permission needed"),
        QStringLiteral("Tessaline needs Accessibility permission to paste helper text into the "
                       "app you were using."),
        {QStringLiteral("Turn On Accessibility"), QStringLiteral("Cancel")});
    if (response == AlertPresenter::kFirstButton)
        m_accessibilityTrust.requestTrust();
    // The permission takes effect later; the user runs the helper again.
    return false;
}

void TextHelperService::pastePlainText()
{
    const std::optional<QString> text = m_clipboard.text();
    if (text && !text->isEmpty()) {
        paste(*text);
        return;
    }
    m_alerts.runModal(QStringLiteral("Clipboard is empty"),
                      QStringLiteral("Copy some text first, then use Paste Plain Text."),
                      {QStringLiteral("OK")});
}

void TextHelperService::paste(const QString& text)
{
    // Kept as a flag and a text: a copied optional in the nested timers trips GCC's
    // maybe-uninitialized analysis in optimised builds.
    const std::optional<QString> clipboardText = m_clipboard.text();
    const bool hadText = clipboardText.has_value();
    const QString saved = clipboardText.value_or(QString());

    const TrackedApp target =
        m_targetAppProvider ? m_targetAppProvider() : TrackedApp::placeholder();
    if (target.bundleID) {
        const QList<RunningApplication> running = m_workspace.runningApplications(*target.bundleID);
        // Without a running instance the keystroke goes to whatever is in front.
        if (!running.isEmpty())
            m_workspace.activate(running.first());
    }

    // Both delays count from now; a failed keystroke is skipped silently and the clipboard is
    // still restored.
    const auto restore = [this, hadText, saved] {
        if (!hadText)
            return; // nothing to give back: the inserted text stays on the clipboard
        m_clipboard.clear();
        m_clipboard.setText(saved);
    };
    if (m_textInserter) {
        // The clipboard is touched only when the focused field takes no text directly.
        m_scheduler.schedule(kKeystrokeDelayMs, this, [this, text, restore] {
            if (m_textInserter && m_textInserter->insertAtCaret(text)) {
                setStatus(std::nullopt);
                return;
            }
            m_clipboard.clear();
            m_clipboard.setText(text);
            if (!m_keyInjector.postPasteChord()) {
                // The session took no keys: the text stays on the clipboard, where the user can
                // paste it, instead of being taken back before anyone could.
                setStatus(notPastedText());
                return;
            }
            setStatus(std::nullopt);
            m_scheduler.schedule(kRestoreDelayMs - kKeystrokeDelayMs, this, restore);
        });
        return;
    }

    m_clipboard.clear();
    m_clipboard.setText(text);
    m_scheduler.schedule(kKeystrokeDelayMs, this, [this] { m_keyInjector.postPasteChord(); });
    m_scheduler.schedule(kRestoreDelayMs, this, restore);
}

QString TextHelperService::notPastedText()
{
    return QStringLiteral("Tessaline could not type into this app: the text is on the clipboard, "
                          "press Ctrl+V to paste it.");
}

void TextHelperService::clearStatus()
{
    setStatus(std::nullopt);
}

void TextHelperService::setStatus(std::optional<QString> status)
{
    if (m_status == status)
        return;
    m_status = std::move(status);
    emit statusChanged();
}

} // namespace Tessaline
