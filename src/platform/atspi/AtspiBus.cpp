// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiBus.h"

#include "LogCategories.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QEventLoop>
#include <QThread>

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

// Calls in flight at once. Each call's time limit runs from when it is sent, so a call waits
// for the answers queued before it too: a batch small enough that a busy application answering
// a huge menu still makes the limit, large enough that a round trip carries many calls.
constexpr int kBatchSize = 128;

// Waits for one answer. With Wait::TurnEventLoop on the main thread of a running application
// the event loop turns meanwhile: a menu bar of tens of thousands of items takes seconds to
// read, and the interface must keep answering.
void awaitReply(const QDBusPendingCall& call, Wait wait)
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (wait == Wait::Block || call.isFinished() || application == nullptr ||
        QThread::currentThread() != application->thread()) {
        QDBusPendingCall(call).waitForFinished();
        return;
    }
    QEventLoop loop;
    // A watcher of a call that has just finished still reports it, one turn later.
    QDBusPendingCallWatcher watcher(call);
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    loop.exec();
    // The loop also ends when the application quits; the call's own time limit ends the wait.
    watcher.waitForFinished();
}

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
std::optional<QList<QDBusMessage>>
callAll(const QDBusConnection& bus, const QList<QDBusMessage>& calls, int timeoutMs, Wait wait)
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
            awaitReply(pending.last(), wait);
        for (QDBusPendingCall& call : pending) {
            call.waitForFinished();
            const QDBusMessage reply = call.reply();
            if (isNoAnswer(reply)) {
                qCDebug(lcAtspi, "%s.%s went unanswered: %s",
                        qUtf8Printable(calls.at(start).interface()),
                        qUtf8Printable(calls.at(start).member()),
                        qUtf8Printable(reply.errorMessage()));
                return std::nullopt;
            }
            replies.append(reply);
        }
    }
    return replies;
}

QDBusMessage accessibleCall(const AtspiReference& object, const QString& interface,
                            const QString& method)
{
    return QDBusMessage::createMethodCall(object.service, object.path.path(), interface, method);
}

bool isNullReference(const AtspiReference& reference)
{
    return reference.service.isEmpty() ||
           reference.path.path() == QStringLiteral("/org/a11y/atspi/null");
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
