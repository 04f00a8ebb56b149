// SPDX-License-Identifier: MIT
#include "platform/portal/DBusRemoteDesktopPortal.h"

#include "LogCategories.h"
#include "platform/portal/PortalNames.h"
#include "platform/portal/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace Tessaline {
namespace {

QString pathText(const QVariant& value)
{
    // The session handle is an object path that the portal sends as a string.
    if (value.userType() == qMetaTypeId<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    return value.toString();
}

QVariantMap propertiesOf(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    const QVariant first = reply.arguments().constFirst();
    if (first.userType() == qMetaTypeId<QDBusArgument>())
        return qdbus_cast<QVariantMap>(first.value<QDBusArgument>());
    return first.toMap();
}

} // namespace

DBusRemoteDesktopPortal::DBusRemoteDesktopPortal(uint version, QDBusConnection bus)
    : m_bus(std::move(bus)), m_version(version)
{
    // A portal that leaves the bus answers none of its requests: they end as failed, so that
    // the injector does not wait for ever.
    PortalRequest::failAllWhenPortalLeaves(m_bus, this, lcPortalKeys);
}

std::optional<uint> DBusRemoteDesktopPortal::keyboardVersion(const QDBusConnection& bus,
                                                             int timeoutMs)
{
    if (!bus.isConnected())
        return std::nullopt;
    QDBusMessage getAll = QDBusMessage::createMethodCall(
        PortalNames::service(), PortalNames::path(),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
    getAll << PortalNames::remoteDesktopInterface();
    const QDBusMessage reply = bus.call(getAll, QDBus::Block, timeoutMs);
    const QVariantMap properties = propertiesOf(reply);
    const uint version = properties.value(QStringLiteral("version")).toUInt();
    const uint devices = properties.value(QStringLiteral("AvailableDeviceTypes")).toUInt();
    if (version == 0 || !(devices & keyboardDevice)) {
        qCInfo(lcPortalKeys) << "no remote-desktop portal with a keyboard:" << reply.errorMessage()
                             << properties;
        return std::nullopt;
    }
    qCInfo(lcPortalKeys) << "remote-desktop portal, version" << version;
    return version;
}

QString DBusRemoteDesktopPortal::nextToken()
{
    return QStringLiteral("tessalinekeys%1").arg(++m_tokens);
}

void DBusRemoteDesktopPortal::call(const QString& method, const QVariantList& arguments,
                                   const QString& token,
                                   std::function<void(uint, const QVariantMap&)> callback)
{
    PortalRequest::call(m_bus, PortalNames::remoteDesktopInterface(), method, arguments, token,
                        std::move(callback), this, lcPortalKeys);
}

void DBusRemoteDesktopPortal::createSession(SessionCallback callback)
{
    const QString token = nextToken();
    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("session_handle_token"), token}};
    call(QStringLiteral("CreateSession"), {options}, token,
         [this, callback = std::move(callback)](uint response, const QVariantMap& results) {
             const QString session = pathText(results.value(QStringLiteral("session_handle")));
             if (response == responseSuccess && !session.isEmpty())
                 listenForClose(session, true);
             callback(response, session);
         });
}

void DBusRemoteDesktopPortal::selectDevices(const QString& session,
                                            const DeviceSelection& selection,
                                            SelectCallback callback)
{
    const QString token = nextToken();
    QVariantMap options{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("types"), selection.types}};
    if (selection.persistMode != 0)
        options.insert(QStringLiteral("persist_mode"), selection.persistMode);
    if (!selection.restoreToken.isEmpty())
        options.insert(QStringLiteral("restore_token"), selection.restoreToken);
    call(QStringLiteral("SelectDevices"), {QVariant::fromValue(QDBusObjectPath(session)), options},
         token, [callback = std::move(callback)](uint response, const QVariantMap&) {
             callback(response);
         });
}

void DBusRemoteDesktopPortal::start(const QString& session, StartCallback callback)
{
    const QString token = nextToken();
    const QVariantMap options{{QStringLiteral("handle_token"), token}};
    // No parent window: the desktop's dialog, if any, stands on its own.
    call(QStringLiteral("Start"),
         {QVariant::fromValue(QDBusObjectPath(session)), QString(), options}, token,
         [callback = std::move(callback)](uint response, const QVariantMap& results) {
             callback(response, results.value(QStringLiteral("devices")).toUInt(),
                      results.value(QStringLiteral("restore_token")).toString());
         });
}

void DBusRemoteDesktopPortal::notifyKeysym(const QString& session, quint32 keysym, bool pressed)
{
    QDBusMessage notify = QDBusMessage::createMethodCall(
        PortalNames::service(), PortalNames::path(), PortalNames::remoteDesktopInterface(),
        QStringLiteral("NotifyKeyboardKeysym"));
    notify << QVariant::fromValue(QDBusObjectPath(session)) << QVariantMap()
           << static_cast<int>(keysym) << static_cast<uint>(pressed ? 1 : 0);
    // Sent without waiting: messages on one connection keep their order, so a chord's presses
    // and releases arrive as sent.
    if (!m_bus.send(notify))
        qCWarning(lcPortalKeys) << "cannot send a key to the portal:" << m_bus.lastError();
}

void DBusRemoteDesktopPortal::closeSession(const QString& session)
{
    listenForClose(session, false);
    m_bus.send(QDBusMessage::createMethodCall(
        PortalNames::service(), session, PortalNames::sessionInterface(), QStringLiteral("Close")));
}

void DBusRemoteDesktopPortal::setClosedCallback(ClosedCallback callback)
{
    m_closedCallback = std::move(callback);
}

void DBusRemoteDesktopPortal::listenForClose(const QString& session, bool listen)
{
    if (listen)
        m_bus.connect(PortalNames::service(), session, PortalNames::sessionInterface(),
                      QStringLiteral("Closed"), this, SLOT(onSessionClosed(QDBusMessage)));
    else
        m_bus.disconnect(PortalNames::service(), session, PortalNames::sessionInterface(),
                         QStringLiteral("Closed"), this, SLOT(onSessionClosed(QDBusMessage)));
}

void DBusRemoteDesktopPortal::onSessionClosed(const QDBusMessage& signal)
{
    const QString session = signal.path();
    listenForClose(session, false);
    if (m_closedCallback)
        m_closedCallback(session);
}

} // namespace Tessaline
