// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>

namespace Tessaline {

QDBusArgument& operator<<(QDBusArgument& argument, const AtspiReference& reference)
{
    argument.beginStructure();
    argument << reference.service << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, AtspiReference& reference)
{
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const AtspiMatchRule& rule)
{
    argument.beginStructure();
    argument << rule.states << rule.stateMatchType << rule.attributes << rule.attributeMatchType
             << rule.roles << rule.roleMatchType << rule.interfaces << rule.interfaceMatchType
             << rule.invert;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, AtspiMatchRule& rule)
{
    argument.beginStructure();
    argument >> rule.states >> rule.stateMatchType >> rule.attributes >> rule.attributeMatchType >>
        rule.roles >> rule.roleMatchType >> rule.interfaces >> rule.interfaceMatchType >>
        rule.invert;
    argument.endStructure();
    return argument;
}

namespace AtspiBus {

void registerTypes()
{
    static const bool registered = [] {
        qDBusRegisterMetaType<AtspiReference>();
        qDBusRegisterMetaType<QList<AtspiReference>>();
        qDBusRegisterMetaType<AtspiMatchRule>();
        return true;
    }();
    Q_UNUSED(registered);
}

std::optional<QString> address()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    const QDBusReply<QString> reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 3000);
    if (!reply.isValid() || reply.value().isEmpty())
        return std::nullopt;
    return reply.value();
}

std::optional<QDBusConnection> connection()
{
    static const QString name = QStringLiteral("tessaline-accessibility-bus");
    QDBusConnection existing(name);
    if (existing.isConnected())
        return existing;
    // A connection that was lost (the accessibility bus restarted) keeps its name, and
    // connecting under a taken name hands back the dead one: forget it first.
    QDBusConnection::disconnectFromBus(name);
    const auto busAddress = address();
    if (!busAddress)
        return std::nullopt;
    registerTypes();
    QDBusConnection connection = QDBusConnection::connectToBus(*busAddress, name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return std::nullopt;
    }
    return connection;
}

namespace {
const QString kPeerPrefix = QStringLiteral("tessaline-accessibility-peer:");
}

std::optional<QDBusConnection> peerConnection(const QString& address)
{
    registerTypes();
    const QString name = kPeerPrefix + address;
    QDBusConnection existing(name);
    if (existing.isConnected())
        return existing;
    QDBusConnection::disconnectFromPeer(name);
    QDBusConnection connection = QDBusConnection::connectToPeer(address, name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromPeer(name);
        return std::nullopt;
    }
    return connection;
}

bool isPeerConnection(const QDBusConnection& connection)
{
    return connection.name().startsWith(kPeerPrefix);
}

} // namespace AtspiBus

} // namespace Tessaline
