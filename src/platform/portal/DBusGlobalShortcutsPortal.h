// SPDX-License-Identifier: MIT
#pragma once

#include "platform/portal/GlobalShortcutsPortal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

namespace Tessaline {

/// The global-shortcuts interface of the desktop portal on the session bus.
class DBusGlobalShortcutsPortal final : public QObject, public GlobalShortcutsPortal
{
    Q_OBJECT
public:
    explicit DBusGlobalShortcutsPortal(QDBusConnection bus = QDBusConnection::sessionBus());

    /// Whether the portal on `bus` serves global shortcuts (its interface's version can be
    /// read). Waits at most `timeoutMs` for a portal that is still starting.
    static bool isAvailable(const QDBusConnection& bus = QDBusConnection::sessionBus(),
                            int timeoutMs = 5000);

    void createSession(SessionCallback callback) override;
    void bindShortcuts(const QString& session, const QList<Shortcut>& shortcuts,
                       BindCallback callback) override;
    void closeSession(const QString& session) override;
    void setShortcutCallback(ShortcutCallback callback) override;

private Q_SLOTS:
    // Activated and Deactivated carry (session, shortcut id, timestamp, options).
    void onActivated(const QDBusMessage& signal);
    void onDeactivated(const QDBusMessage& signal);

private:
    void shortcutSignal(const QDBusMessage& signal, bool active);
    QString nextToken();
    void call(const QString& method, const QVariantList& arguments, const QString& token,
              std::function<void(uint, const QVariantMap&)> callback);

    QDBusConnection m_bus;
    quint64 m_tokens = 0;
    ShortcutCallback m_shortcutCallback;
};

} // namespace Tessaline
