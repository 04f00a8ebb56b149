// SPDX-License-Identifier: MIT
#include "platform/portal/DBusGlobalShortcutsPortal.h"

#include "LogCategories.h"
#include "platform/portal/PortalNames.h"
#include "platform/portal/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace Tessaline {

/// One shortcut as the portal's methods and answers carry it: an id and its properties.
struct PortalShortcutEntry
{
    QString id;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcutEntry& entry)
{
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcutEntry& entry)
{
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

} // namespace Tessaline

Q_DECLARE_METATYPE(Tessaline::PortalShortcutEntry)

namespace Tessaline {
namespace {

QStringList shortcutIds(const QVariant& value)
{
    QStringList ids;
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return ids;
    const auto entries = qdbus_cast<QList<PortalShortcutEntry>>(value.value<QDBusArgument>());
    for (const PortalShortcutEntry& entry : entries)
        ids.append(entry.id);
    return ids;
}

} // namespace

DBusGlobalShortcutsPortal::DBusGlobalShortcutsPortal(QDBusConnection bus) : m_bus(std::move(bus))
{
    qDBusRegisterMetaType<PortalShortcutEntry>();
    qDBusRegisterMetaType<QList<PortalShortcutEntry>>();
    const bool listening =
        m_bus.connect(PortalNames::service(), PortalNames::path(),
                      PortalNames::globalShortcutsInterface(), QStringLiteral("Activated"), this,
                      SLOT(onActivated(QDBusMessage))) &&
        m_bus.connect(PortalNames::service(), PortalNames::path(),
                      PortalNames::globalShortcutsInterface(), QStringLiteral("Deactivated"), this,
                      SLOT(onDeactivated(QDBusMessage)));
    if (!listening)
        qCWarning(lcHotKey) << "cannot listen to the portal's shortcuts:" << m_bus.lastError();

    // A portal that leaves the bus answers none of its requests: they end as failed, so that
    // the hot keys are not left waiting for ever.
    PortalRequest::failAllWhenPortalLeaves(m_bus, this, lcHotKey);
}

bool DBusGlobalShortcutsPortal::isAvailable(const QDBusConnection& bus, int timeoutMs)
{
    if (!bus.isConnected())
        return false;
    QDBusMessage get = QDBusMessage::createMethodCall(
        PortalNames::service(), PortalNames::path(),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << PortalNames::globalShortcutsInterface() << QStringLiteral("version");
    const QDBusMessage reply = bus.call(get, QDBus::Block, timeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        qCInfo(lcHotKey) << "no global-shortcuts portal:" << reply.errorMessage();
        return false;
    }
    const uint version = reply.arguments().constFirst().value<QDBusVariant>().variant().toUInt();
    qCInfo(lcHotKey) << "global-shortcuts portal, version" << version;
    return version > 0;
}

QString DBusGlobalShortcutsPortal::nextToken()
{
    return QStringLiteral("tessaline%1").arg(++m_tokens);
}

void DBusGlobalShortcutsPortal::call(const QString& method, const QVariantList& arguments,
                                     const QString& token,
                                     std::function<void(uint, const QVariantMap&)> callback)
{
    PortalRequest::call(m_bus, PortalNames::globalShortcutsInterface(), method, arguments, token,
                        std::move(callback), this, lcHotKey);
}

void DBusGlobalShortcutsPortal::createSession(SessionCallback callback)
{
    PortalRequest::createSession(m_bus, PortalNames::globalShortcutsInterface(), nextToken(),
                                 std::move(callback), this, lcHotKey);
}

void DBusGlobalShortcutsPortal::bindShortcuts(const QString& session,
                                              const QList<Shortcut>& shortcuts,
                                              BindCallback callback)
{
    QList<PortalShortcutEntry> entries;
    for (const Shortcut& shortcut : shortcuts) {
        QVariantMap properties{{QStringLiteral("description"), shortcut.description}};
        if (!shortcut.preferredTrigger.isEmpty())
            properties.insert(QStringLiteral("preferred_trigger"), shortcut.preferredTrigger);
        entries.append({shortcut.id, properties});
    }
    const QString token = nextToken();
    const QVariantMap options{{QStringLiteral("handle_token"), token}};
    call(QStringLiteral("BindShortcuts"),
         {QVariant::fromValue(QDBusObjectPath(session)), QVariant::fromValue(entries), QString(),
          options},
         token, [callback = std::move(callback)](uint response, const QVariantMap& results) {
             callback(response, shortcutIds(results.value(QStringLiteral("shortcuts"))));
         });
}

void DBusGlobalShortcutsPortal::closeSession(const QString& session)
{
    const QDBusMessage close = QDBusMessage::createMethodCall(
        PortalNames::service(), session, PortalNames::sessionInterface(), QStringLiteral("Close"));
    m_bus.send(close);
}

void DBusGlobalShortcutsPortal::setShortcutCallback(ShortcutCallback callback)
{
    m_shortcutCallback = std::move(callback);
}

void DBusGlobalShortcutsPortal::onActivated(const QDBusMessage& signal)
{
    shortcutSignal(signal, true);
}

void DBusGlobalShortcutsPortal::onDeactivated(const QDBusMessage& signal)
{
    shortcutSignal(signal, false);
}

void DBusGlobalShortcutsPortal::shortcutSignal(const QDBusMessage& signal, bool active)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.size() < 2 || !m_shortcutCallback)
        return;
    m_shortcutCallback(PortalRequest::pathText(arguments.at(0)), arguments.at(1).toString(),
                       active);
}

} // namespace Tessaline
