// SPDX-License-Identifier: MIT
#pragma once

#include "platform/portal/RemoteDesktopPortal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace Tessaline {

/// The remote-desktop interface of the desktop portal on the session bus.
class DBusRemoteDesktopPortal final : public QObject, public RemoteDesktopPortal
{
    Q_OBJECT
public:
    DBusRemoteDesktopPortal(uint version, QDBusConnection bus = QDBusConnection::sessionBus());

    /// The version of the portal's remote-desktop interface on `bus` when it serves one that
    /// offers a keyboard; nothing otherwise. Waits at most `timeoutMs` for a portal that is
    /// still starting.
    static std::optional<uint>
    keyboardVersion(const QDBusConnection& bus = QDBusConnection::sessionBus(),
                    int timeoutMs = 5000);

    uint version() const override { return m_version; }
    void createSession(SessionCallback callback) override;
    void selectDevices(const QString& session, const DeviceSelection& selection,
                       SelectCallback callback) override;
    void start(const QString& session, StartCallback callback) override;
    void notifyKeysym(const QString& session, quint32 keysym, bool pressed) override;
    void closeSession(const QString& session) override;
    void setClosedCallback(ClosedCallback callback) override;

private Q_SLOTS:
    void onSessionClosed(const QDBusMessage& signal);

private:
    struct PendingKey
    {
        QString session;
        quint32 keysym = 0;
        bool pressed = false;
    };

    QString nextToken();
    void sendNextKey();
    void call(const QString& method, const QVariantList& arguments, const QString& token,
              std::function<void(uint, const QVariantMap&)> callback);
    void listenForClose(const QString& session, bool listen);

    QDBusConnection m_bus;
    uint m_version;
    quint64 m_tokens = 0;
    ClosedCallback m_closedCallback;
    // Keys waiting for the one before them to be answered.
    QList<PendingKey> m_keys;
    bool m_keyInFlight = false;
};

} // namespace Tessaline
