// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
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

namespace {

// Calls in flight at once.
constexpr int kBatchSize = 512;

} // namespace

bool isNoAnswer(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return false;
    const QString error = reply.errorName();
    return error == QStringLiteral("org.freedesktop.DBus.Error.NoReply") ||
           error == QStringLiteral("org.freedesktop.DBus.Error.Timeout") ||
           error == QStringLiteral("org.freedesktop.DBus.Error.TimedOut") ||
           error == QStringLiteral("org.freedesktop.DBus.Error.Disconnected");
}

// Sends every call before waiting for the first answer. Absent when one went unanswered.
std::optional<QList<QDBusMessage>> callAll(const QDBusConnection& bus,
                                           const QList<QDBusMessage>& calls, int timeoutMs)
{
    const bool peer = AtspiBus::isPeerConnection(bus);
    QList<QDBusMessage> replies;
    replies.reserve(calls.size());
    for (qsizetype start = 0; start < calls.size(); start += kBatchSize) {
        QList<QDBusPendingCall> pending;
        const qsizetype end = std::min(calls.size(), start + kBatchSize);
        for (qsizetype i = start; i < end; ++i) {
            if (!peer) {
                pending.append(bus.asyncCall(calls.at(i), timeoutMs));
                continue;
            }
            // A direct connection to the application has no bus names to address.
            const QDBusMessage& call = calls.at(i);
            QDBusMessage direct = QDBusMessage::createMethodCall(QString(), call.path(),
                                                                 call.interface(), call.member());
            direct.setArguments(call.arguments());
            pending.append(bus.asyncCall(direct, timeoutMs));
        }
        // Answers come in order: waiting for the last one first means one wake-up per batch
        // instead of one per answer.
        if (!pending.isEmpty())
            pending.last().waitForFinished();
        for (QDBusPendingCall& call : pending) {
            call.waitForFinished();
            const QDBusMessage reply = call.reply();
            if (isNoAnswer(reply))
                return std::nullopt;
            replies.append(reply);
        }
    }
    return replies;
}

QList<AtspiReference> childrenOf(const QDBusMessage& reply)
{
    QList<AtspiReference> children;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return children;
    const QVariant value = reply.arguments().first();
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return children;
    value.value<QDBusArgument>() >> children;
    return children;
}

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
