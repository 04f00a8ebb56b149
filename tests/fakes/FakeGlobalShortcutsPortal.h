// SPDX-License-Identifier: MIT
#pragma once

#include "platform/portal/GlobalShortcutsPortal.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace Tessaline::Testing {

/// A desktop's global-shortcuts service held by the test: it records every request and keeps
/// its callback, so that the test answers when and how it likes, and it presses shortcuts.
class FakeGlobalShortcutsPortal final : public GlobalShortcutsPortal
{
public:
    struct Binding
    {
        QString session;
        QList<Shortcut> shortcuts;
        BindCallback callback;
    };

    QList<SessionCallback> sessionRequests;
    QList<Binding> bindings;
    QStringList closed;
    /// Also told of every close, for a test that outlives this portal.
    QStringList* closedLog = nullptr;
    ShortcutCallback shortcutCallback;
    int sessions = 0;

    void createSession(SessionCallback callback) override
    {
        sessionRequests.append(std::move(callback));
    }
    void bindShortcuts(const QString& session, const QList<Shortcut>& shortcuts,
                       BindCallback callback) override
    {
        bindings.append({session, shortcuts, std::move(callback)});
    }
    void closeSession(const QString& session) override
    {
        closed.append(session);
        if (closedLog != nullptr)
            closedLog->append(session);
    }
    void setShortcutCallback(ShortcutCallback callback) override
    {
        shortcutCallback = std::move(callback);
    }

    /// Answers the oldest session request; success gives a new session and returns its handle.
    QString answerSession(uint response = responseSuccess)
    {
        const SessionCallback callback = sessionRequests.takeFirst();
        const QString session =
            response == responseSuccess ? QStringLiteral("/session/%1").arg(++sessions) : QString();
        callback(response, session);
        return session;
    }

    /// Answers the oldest binding; granting binds every shortcut it asked for.
    void answerBinding(uint response = responseSuccess)
    {
        const Binding binding = bindings.takeFirst();
        QStringList ids;
        if (response == responseSuccess) {
            for (const Shortcut& shortcut : binding.shortcuts)
                ids.append(shortcut.id);
        }
        binding.callback(response, ids);
    }

    /// Presses (or releases) a shortcut of a session.
    void activate(const QString& session, const QString& id, bool active = true)
    {
        if (shortcutCallback)
            shortcutCallback(session, id, active);
    }
};

} // namespace Tessaline::Testing
