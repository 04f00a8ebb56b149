// SPDX-License-Identifier: MIT
#include "platform/portal/DBusRemoteDesktopPortal.h"

#include "LogCategories.h"
#include "platform/portal/PortalNames.h"
#include "platform/portal/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace Tessaline {
namespace {

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
    PortalRequest::createSession(
        m_bus, PortalNames::remoteDesktopInterface(), nextToken(),
        [this, callback = std::move(callback)](uint response, const QString& session) {
            if (response == responseSuccess && !session.isEmpty())
                listenForClose(session, true);
            callback(response, session);
        },
        this, lcPortalKeys);
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
    m_keys.append({session, keysym, pressed});
    if (!m_keyInFlight)
        sendNextKey();
}

// The portal may answer calls on several threads, so two calls sent at once can reach the
// desktop in either order (a key before its Control). Each key is sent once the one before it
// was answered.
void DBusRemoteDesktopPortal::sendNextKey()
{
    m_keyInFlight = !m_keys.isEmpty();
    if (!m_keyInFlight)
        return;
    const PendingKey key = m_keys.takeFirst();
    QDBusMessage notify = QDBusMessage::createMethodCall(
        PortalNames::service(), PortalNames::path(), PortalNames::remoteDesktopInterface(),
        QStringLiteral("NotifyKeyboardKeysym"));
    notify << QVariant::fromValue(QDBusObjectPath(key.session)) << QVariantMap()
           << static_cast<int>(key.keysym) << static_cast<uint>(key.pressed ? 1 : 0);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(notify), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (finished->isError())
                    qCWarning(lcPortalKeys)
                        << "the portal refused a key:" << finished->error().message();
                sendNextKey();
            });
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
