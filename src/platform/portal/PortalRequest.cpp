// SPDX-License-Identifier: MIT
#include "platform/portal/PortalRequest.h"

#include "platform/portal/PortalNames.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

namespace Tessaline {

PortalRequest::PortalRequest(QDBusConnection bus, const QString& path, Callback callback,
                             QObject* parent)
    : QObject(parent), m_bus(std::move(bus)), m_callback(std::move(callback))
{
    listen(path);
}

QString PortalRequest::pathFor(const QDBusConnection& bus, const QString& token)
{
    // The caller's unique name without its colon, dots made underscores (":1.42" -> "1_42").
    QString sender = bus.baseService();
    if (sender.startsWith(QLatin1Char(':')))
        sender.remove(0, 1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

void PortalRequest::call(const QDBusConnection& bus, const QString& interface,
                         const QString& method, const QVariantList& arguments, const QString& token,
                         Callback callback, QObject* owner, LogCategory category)
{
    auto* request = new PortalRequest(bus, pathFor(bus, token), std::move(callback), owner);
    QDBusMessage message = QDBusMessage::createMethodCall(PortalNames::service(),
                                                          PortalNames::path(), interface, method);
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(request->m_bus.asyncCall(message), request);
    connect(watcher, &QDBusPendingCallWatcher::finished, request,
            [request, method, category](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusObjectPath> reply = *finished;
                if (reply.isError()) {
                    qCWarning(category)
                        << "the portal refused" << method << ":" << reply.error().message();
                    request->fail(responseOther);
                    return;
                }
                request->follow(reply.value().path());
            });
}

void PortalRequest::createSession(const QDBusConnection& bus, const QString& interface,
                                  const QString& token,
                                  std::function<void(uint, const QString&)> callback,
                                  QObject* owner, LogCategory category)
{
    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("session_handle_token"), token}};
    call(
        bus, interface, QStringLiteral("CreateSession"), {options}, token,
        [callback = std::move(callback)](uint response, const QVariantMap& results) {
            callback(response, pathText(results.value(QStringLiteral("session_handle"))));
        },
        owner, category);
}

QString PortalRequest::pathText(const QVariant& value)
{
    if (value.userType() == qMetaTypeId<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    return value.toString();
}

void PortalRequest::failAllWhenPortalLeaves(const QDBusConnection& bus, QObject* owner,
                                            LogCategory category)
{
    auto* watcher = new QDBusServiceWatcher(PortalNames::service(), bus,
                                            QDBusServiceWatcher::WatchForUnregistration, owner);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, owner, [owner, category] {
        const auto pending =
            owner->findChildren<PortalRequest*>(QString(), Qt::FindDirectChildrenOnly);
        if (!pending.isEmpty())
            qCWarning(category) << "the portal left the bus with" << pending.size()
                                << "requests unanswered";
        for (PortalRequest* request : pending)
            request->fail(responseOther);
    });
}

bool PortalRequest::listen(const QString& path)
{
    m_path = path;
    return m_bus.connect(PortalNames::service(), path, PortalNames::requestInterface(),
                         QStringLiteral("Response"), this, SLOT(onResponse(uint, QVariantMap)));
}

void PortalRequest::stopListening()
{
    if (m_path.isEmpty())
        return;
    m_bus.disconnect(PortalNames::service(), m_path, PortalNames::requestInterface(),
                     QStringLiteral("Response"), this, SLOT(onResponse(uint, QVariantMap)));
    m_path.clear();
}

void PortalRequest::follow(const QString& path)
{
    if (path == m_path || !m_callback)
        return;
    stopListening();
    listen(path);
}

void PortalRequest::fail(uint response)
{
    onResponse(response, {});
}

void PortalRequest::onResponse(uint response, const QVariantMap& results)
{
    if (!m_callback)
        return;
    stopListening();
    const Callback callback = std::exchange(m_callback, nullptr);
    deleteLater();
    callback(response, results);
}

} // namespace Tessaline
