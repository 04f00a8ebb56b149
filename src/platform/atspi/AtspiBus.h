// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>

#include <optional>

class QDBusArgument;
class QDBusMessage;

namespace Tessaline {

/// A reference to an accessible object: its application's bus name and its object path.
struct AtspiReference
{
    QString service;
    QDBusObjectPath path;

    QString key() const { return service + QLatin1Char('|') + path.path(); }
    friend bool operator==(const AtspiReference&, const AtspiReference&) = default;
};

QDBusArgument& operator<<(QDBusArgument& argument, const AtspiReference& reference);
const QDBusArgument& operator>>(const QDBusArgument& argument, AtspiReference& reference);

/// A Collection match rule: which states, attributes, roles and interfaces an object must (or
/// must not) have. Sets are bit sets; an empty set with match type "all" matches everything.
struct AtspiMatchRule
{
    QList<int> states = QList<int>(2, 0);
    int stateMatchType = 1;
    QMap<QString, QString> attributes;
    int attributeMatchType = 1;
    QList<int> roles = QList<int>(4, 0);
    int roleMatchType = 1;
    QStringList interfaces;
    int interfaceMatchType = 1;
    bool invert = false;
};

QDBusArgument& operator<<(QDBusArgument& argument, const AtspiMatchRule& rule);
const QDBusArgument& operator>>(const QDBusArgument& argument, AtspiMatchRule& rule);

/// The accessibility bus: its address (asked of the session bus) and a connection to it.
namespace AtspiBus {

/// The accessibility bus's address, absent when the session has none.
std::optional<QString> address();
/// A connection to the accessibility bus, opened once per process and kept.
std::optional<QDBusConnection> connection();
/// A direct connection to an application's own D-Bus server (its "application bus address"),
/// opened once per address and kept while it stays connected.
std::optional<QDBusConnection> peerConnection(const QString& address);
/// True for connections made by peerConnection(), which address no bus names.
bool isPeerConnection(const QDBusConnection& connection);
/// Registers the D-Bus types used by the accessibility calls.
void registerTypes();

/// How callAll() waits: blocking, or turning the event loop of the main thread meanwhile (for
/// reads that may take seconds; the caller must then expect other events to run).
enum class Wait
{
    Block,
    TurnEventLoop
};

/// True when `reply` says the call went unanswered (no reply, timed out, disconnected).
bool isNoAnswer(const QDBusMessage& reply);
/// Sends every call before waiting for the first answer, in batches; the replies in the order
/// of the calls. Absent when one went unanswered. Over a peer connection the calls are sent
/// without a destination.
std::optional<QList<QDBusMessage>> callAll(const QDBusConnection& bus,
                                           const QList<QDBusMessage>& calls, int timeoutMs,
                                           Wait wait = Wait::Block);
/// A call of `method` of `interface` on the accessible `object`.
QDBusMessage accessibleCall(const AtspiReference& object, const QString& interface,
                            const QString& method);
/// True for the null reference ("/org/a11y/atspi/null"), which stands for "no object".
bool isNullReference(const AtspiReference& reference);
/// The references of an accessible's GetChildren reply; none for an error.
QList<AtspiReference> childrenOf(const QDBusMessage& reply);

inline const QString kRegistry = QStringLiteral("org.a11y.atspi.Registry");
inline const QString kRootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
inline const QString kAccessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");
inline const QString kActionInterface = QStringLiteral("org.a11y.atspi.Action");

} // namespace AtspiBus

} // namespace Tessaline

Q_DECLARE_METATYPE(Tessaline::AtspiReference)
Q_DECLARE_METATYPE(Tessaline::AtspiMatchRule)
