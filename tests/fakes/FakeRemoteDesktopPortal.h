// SPDX-License-Identifier: MIT
#pragma once

#include "platform/portal/RemoteDesktopPortal.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace Tessaline::Testing {

/// A desktop's remote-desktop service held by the test: it keeps every request's callback, so
/// that the test answers when and how it likes, and records the keysyms it is sent.
class FakeRemoteDesktopPortal final : public RemoteDesktopPortal
{
public:
    struct Selection
    {
        QString session;
        DeviceSelection selection;
        SelectCallback callback;
    };
    struct Start
    {
        QString session;
        StartCallback callback;
    };
    struct Key
    {
        QString session;
        quint32 keysym;
        bool pressed;
        friend bool operator==(const Key&, const Key&) = default;
    };

    explicit FakeRemoteDesktopPortal(uint interfaceVersion = 1) : interfaceVersion(interfaceVersion)
    {}

    uint interfaceVersion;
    QList<SessionCallback> sessionRequests;
    QList<Selection> selections;
    QList<Start> starts;
    QList<Key> keys;
    QStringList closed;
    /// Also told of every close, for a test that outlives this portal.
    QStringList* closedLog = nullptr;
    ClosedCallback closedCallback;
    int sessions = 0;

    uint version() const override { return interfaceVersion; }
    void createSession(SessionCallback callback) override
    {
        sessionRequests.append(std::move(callback));
    }
    void selectDevices(const QString& session, const DeviceSelection& selection,
                       SelectCallback callback) override
    {
        selections.append({session, selection, std::move(callback)});
    }
    void start(const QString& session, StartCallback callback) override
    {
        starts.append({session, std::move(callback)});
    }
    void notifyKeysym(const QString& session, quint32 keysym, bool pressed) override
    {
        keys.append({session, keysym, pressed});
    }
    void closeSession(const QString& session) override
    {
        closed.append(session);
        if (closedLog != nullptr)
            closedLog->append(session);
    }
    void setClosedCallback(ClosedCallback callback) override
    {
        closedCallback = std::move(callback);
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
    void answerSelection(uint response = responseSuccess)
    {
        selections.takeFirst().callback(response);
    }
    void answerStart(uint response = responseSuccess, uint devices = keyboardDevice,
                     const QString& restoreToken = {})
    {
        starts.takeFirst().callback(response, devices, restoreToken);
    }
    /// Creates, selects and starts a session, granting everything.
    QString grant(const QString& restoreToken = {})
    {
        const QString session = answerSession();
        answerSelection();
        answerStart(responseSuccess, keyboardDevice, restoreToken);
        return session;
    }
};

} // namespace Tessaline::Testing
