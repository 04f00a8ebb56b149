// SPDX-License-Identifier: MIT
#include "platform/portal/PortalRequest.h"

#include "platform/portal/PortalNames.h"

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
