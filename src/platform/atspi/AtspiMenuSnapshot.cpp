// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiMenuSnapshot.h"

#include "LogCategories.h"
#include "platform/atspi/AtspiWalkState.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QHash>
#include <QSet>

#include <atspi/atspi-constants.h>

namespace Tessaline {

namespace {

// How far below the application the menu bar is looked for.
constexpr int kMenuBarSearchDepth = 6;

using AtspiBus::childrenOf;

// Menu reads turn the event loop while they wait: a huge menu bar takes seconds to read.
std::optional<QList<QDBusMessage>> callAll(const QDBusConnection& bus,
                                           const QList<QDBusMessage>& calls, int timeoutMs)
{
    return AtspiBus::callAll(bus, calls, timeoutMs, AtspiBus::Wait::TurnEventLoop);
}

const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kCollectionInterface = QStringLiteral("org.a11y.atspi.Collection");

// The role bit set of a match rule: one bit per role, 32 to an integer.
QList<int> roleSet(int role)
{
    QList<int> bits(4, 0);
    bits[role / 32] = static_cast<int>(1u << (role % 32));
    return bits;
}

// The failure of a walk whose call went unanswered: every further call would cost another full
// timeout, so the walk stops there.
Unexpected<QString> unanswered()
{
    return Unexpected(QStringLiteral("the application did not answer"));
}

using AtspiBus::accessibleCall;
using AtspiBus::isNullReference;

} // namespace

std::optional<AtspiReference> AtspiMenuSnapshot::findApplication(const QDBusConnection& bus,
                                                                 qint64 processId, int timeoutMs)
{
    const auto registryReply =
        callAll(bus,
                {QDBusMessage::createMethodCall(AtspiBus::kRegistry, AtspiBus::kRootPath,
                                                AtspiBus::kAccessibleInterface,
                                                QStringLiteral("GetChildren"))},
                timeoutMs);
    if (!registryReply)
        return std::nullopt;
    const QList<AtspiReference> applications = childrenOf(registryReply->first());
    QList<QDBusMessage> calls;
    for (const AtspiReference& application : applications) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"));
        call << application.service;
        calls.append(call);
    }
    const auto pids = callAll(bus, calls, timeoutMs);
    if (!pids)
        return std::nullopt;
    for (qsizetype i = 0; i < pids->size(); ++i) {
        const QDBusMessage& reply = pids->at(i);
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
            reply.arguments().first().toLongLong() == processId) {
            return applications.at(i);
        }
    }
    return std::nullopt;
}

std::optional<AtspiMenuSnapshot> AtspiMenuSnapshot::read(const QDBusConnection& bus,
                                                         const AtspiReference& application,
                                                         int timeoutMs)
{
    return readOver(channel(bus, application, timeoutMs), application, timeoutMs);
}

QDBusConnection AtspiMenuSnapshot::channel(const QDBusConnection& bus,
                                           const AtspiReference& application, int timeoutMs)
{
    // Applications that offer a direct connection are asked over it: half the messages, and
    // none through the bus daemon.
    return peerConnection(bus, application, timeoutMs).value_or(bus);
}

Expected<std::optional<AtspiReference>>
AtspiMenuSnapshot::findMenuBar(const QDBusConnection& channel, const AtspiReference& application,
                               int timeoutMs)
{
    const auto matched = matchMenuBar(channel, application, timeoutMs);
    if (!matched || *matched)
        return matched;
    return searchMenuBar(channel, application, timeoutMs);
}

std::optional<QDBusConnection> AtspiMenuSnapshot::peerConnection(const QDBusConnection& bus,
                                                                 const AtspiReference& application,
                                                                 int timeoutMs)
{
    const auto replies =
        callAll(bus,
                {accessibleCall(application, QStringLiteral("org.a11y.atspi.Application"),
                                QStringLiteral("GetApplicationBusAddress"))},
                timeoutMs);
    if (!replies || replies->first().type() != QDBusMessage::ReplyMessage ||
        replies->first().arguments().isEmpty()) {
        return std::nullopt;
    }
    const QString address = replies->first().arguments().first().toString();
    if (address.isEmpty())
        return std::nullopt;
    return AtspiBus::peerConnection(address);
}

std::optional<AtspiMenuSnapshot> AtspiMenuSnapshot::readOver(const QDBusConnection& bus,
                                                             const AtspiReference& application,
                                                             int timeoutMs)
{
    const auto found = findMenuBar(bus, application, timeoutMs);
    if (!found || !*found)
        return std::nullopt;
    const AtspiReference menuBar = **found;
    auto snapshot = readByMatches(bus, menuBar, timeoutMs);
    if (!snapshot)
        return std::nullopt;
    if (*snapshot)
        return std::move(*snapshot).value();
    return readByLevels(bus, menuBar, timeoutMs);
}

Expected<std::optional<AtspiReference>>
AtspiMenuSnapshot::matchMenuBar(const QDBusConnection& bus, const AtspiReference& application,
                                int timeoutMs)
{
    QDBusMessage call =
        accessibleCall(application, kCollectionInterface, QStringLiteral("GetMatches"));
    AtspiMatchRule rule;
    rule.roles = roleSet(ATSPI_ROLE_MENU_BAR);
    rule.roleMatchType = ATSPI_Collection_MATCH_ANY;
    call << QVariant::fromValue(rule) << quint32(ATSPI_Collection_SORT_ORDER_CANONICAL) << qint32(1)
         << true;
    const auto replies = callAll(bus, {call}, timeoutMs);
    if (!replies)
        return unanswered();
    const QList<AtspiReference> found = childrenOf(replies->first());
    if (found.isEmpty() || isNullReference(found.first()))
        return std::optional<AtspiReference>();
    return std::optional<AtspiReference>(found.first());
}

// Breadth first from the application to the first menu bar, one level per round.
Expected<std::optional<AtspiReference>>
AtspiMenuSnapshot::searchMenuBar(const QDBusConnection& bus, const AtspiReference& application,
                                 int timeoutMs)
{
    QList<AtspiReference> level{application};
    QSet<QString> seen{application.key()};
    for (int depth = 0; depth <= kMenuBarSearchDepth && !level.isEmpty(); ++depth) {
        QList<QDBusMessage> calls;
        for (const AtspiReference& object : level) {
            calls.append(
                accessibleCall(object, AtspiBus::kAccessibleInterface, QStringLiteral("GetRole")));
            calls.append(accessibleCall(object, AtspiBus::kAccessibleInterface,
                                        QStringLiteral("GetChildren")));
        }
        const auto replies = callAll(bus, calls, timeoutMs);
        if (!replies)
            return unanswered();
        QList<AtspiReference> next;
        for (qsizetype i = 0; i < level.size(); ++i) {
            const QDBusMessage& role = replies->at(2 * i);
            if (role.type() == QDBusMessage::ReplyMessage && !role.arguments().isEmpty() &&
                role.arguments().first().toUInt() == ATSPI_ROLE_MENU_BAR) {
                return std::optional<AtspiReference>(level.at(i));
            }
            for (const AtspiReference& child : childrenOf(replies->at(2 * i + 1))) {
                if (isNullReference(child) || seen.contains(child.key()))
                    continue;
                seen.insert(child.key());
                next.append(child);
            }
        }
        level = next;
    }
    return std::optional<AtspiReference>();
}

// Every object under the menu bar in one call, in tree order; the key bindings of all of them in
// one round; then names and parents only for the objects with a key and their ancestors.
Expected<std::optional<AtspiMenuSnapshot>>
AtspiMenuSnapshot::readByMatches(const QDBusConnection& bus, const AtspiReference& menuBar,
                                 int timeoutMs)
{
    QDBusMessage call = accessibleCall(menuBar, kCollectionInterface, QStringLiteral("GetMatches"));
    AtspiMatchRule rule;
    rule.roles = roleSet(ATSPI_ROLE_SEPARATOR);
    rule.roleMatchType = ATSPI_Collection_MATCH_NONE;
    call << QVariant::fromValue(rule) << quint32(ATSPI_Collection_SORT_ORDER_CANONICAL) << qint32(0)
         << true;
    const auto matchReply = callAll(bus, {call}, timeoutMs);
    if (!matchReply)
        return unanswered();
    if (matchReply->first().type() != QDBusMessage::ReplyMessage)
        return std::optional<AtspiMenuSnapshot>();
    QList<AtspiReference> objects;
    for (const AtspiReference& object : childrenOf(matchReply->first())) {
        if (!isNullReference(object) && object.key() != menuBar.key())
            objects.append(object);
    }
    if (objects.isEmpty())
        return std::optional<AtspiMenuSnapshot>();
    // As many elements as a level walk reads, the first ones in tree order.
    if (objects.size() > AtspiWalkState::kMaxElements)
        objects.resize(AtspiWalkState::kMaxElements);

    QList<QDBusMessage> bindingCalls;
    for (const AtspiReference& object : objects) {
        QDBusMessage binding =
            accessibleCall(object, AtspiBus::kActionInterface, QStringLiteral("GetKeyBinding"));
        binding << 0;
        bindingCalls.append(binding);
    }
    const auto bindings = callAll(bus, bindingCalls, timeoutMs);
    if (!bindings)
        return unanswered();

    struct Found
    {
        std::optional<QString> title;
        QString binding;
        std::optional<AtspiReference> parent;
        bool fetched = false;
    };
    QHash<QString, Found> found;
    QList<AtspiReference> wanted;
    for (qsizetype i = 0; i < objects.size(); ++i) {
        const QDBusMessage& reply = bindings->at(i);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
            continue;
        const QString binding = reply.arguments().first().toString();
        // Without its title a binding may look like a shortcut that is a mnemonic; the title
        // decides below. Objects with no key at all need nothing more.
        if (!AtspiKeyBinding::parse(binding, QString()))
            continue;
        found[objects.at(i).key()].binding = binding;
        wanted.append(objects.at(i));
    }

    // Names and parents, climbing towards the menu bar one generation per round.
    QSet<QString> requested;
    for (const AtspiReference& object : wanted)
        requested.insert(object.key());
    int rounds = 0;
    while (!wanted.isEmpty()) {
        if (++rounds > AtspiWalkState::kMaxDepth + 1)
            return std::optional<AtspiMenuSnapshot>();
        QList<QDBusMessage> calls;
        for (const AtspiReference& object : wanted) {
            QDBusMessage all =
                accessibleCall(object, kPropertiesInterface, QStringLiteral("GetAll"));
            all << AtspiBus::kAccessibleInterface;
            calls.append(all);
        }
        const auto replies = callAll(bus, calls, timeoutMs);
        if (!replies)
            return unanswered();
        QList<AtspiReference> parents;
        for (qsizetype i = 0; i < wanted.size(); ++i) {
            Found& entry = found[wanted.at(i).key()];
            entry.fetched = true;
            const QDBusMessage& reply = replies->at(i);
            if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
                continue;
            const QVariantMap properties = qdbus_cast<QVariantMap>(reply.arguments().first());
            if (properties.contains(QStringLiteral("Name")))
                entry.title = properties.value(QStringLiteral("Name")).toString().trimmed();
            const QVariant parentValue = properties.value(QStringLiteral("Parent"));
            if (parentValue.userType() == qMetaTypeId<QDBusArgument>()) {
                AtspiReference parent;
                parentValue.value<QDBusArgument>() >> parent;
                entry.parent = parent;
                if (!isNullReference(parent) && parent.key() != menuBar.key() &&
                    !requested.contains(parent.key())) {
                    requested.insert(parent.key());
                    parents.append(parent);
                }
            }
        }
        wanted = parents;
    }

    // The tree: the menu bar, then every fetched object under its parent, in tree order.
    AtspiMenuSnapshot snapshot;
    snapshot.m_nodes.append(Node{});
    QHash<QString, int> indexOf{{menuBar.key(), 0}};
    QHash<QString, int> depthOf{{menuBar.key(), 0}};
    for (const AtspiReference& object : objects) {
        const auto entry = found.constFind(object.key());
        if (entry == found.constEnd() || !entry->fetched || !entry->parent)
            continue;
        const auto parentIndex = indexOf.constFind(entry->parent->key());
        if (parentIndex == indexOf.constEnd())
            continue; // its parent lies outside the menu bar, or was cut off deeper up
        const int depth = depthOf.value(entry->parent->key()) + 1;
        if (depth > AtspiWalkState::kMaxDepth)
            continue;
        Node node;
        node.title = entry->title;
        if (!entry->binding.isEmpty())
            node.key = AtspiKeyBinding::parse(entry->binding, entry->title.value_or(QString()));
        const int index = static_cast<int>(snapshot.m_nodes.size());
        snapshot.m_nodes.append(node);
        snapshot.m_nodes[*parentIndex].children.append(index);
        indexOf.insert(object.key(), index);
        depthOf.insert(object.key(), depth);
    }
    return std::optional<AtspiMenuSnapshot>(std::move(snapshot));
}

// The menu tree one level per round: name, children and key binding of every object.
std::optional<AtspiMenuSnapshot> AtspiMenuSnapshot::readByLevels(const QDBusConnection& bus,
                                                                 const AtspiReference& menuBar,
                                                                 int timeoutMs)
{
    AtspiMenuSnapshot snapshot;
    snapshot.m_nodes.append(Node{});
    QList<std::pair<AtspiReference, int>> current{{menuBar, 0}};
    QSet<QString> visited{menuBar.key()};
    for (int depth = 0; !current.isEmpty(); ++depth) {
        QList<QDBusMessage> calls;
        for (const auto& [object, index] : current) {
            QDBusMessage name = accessibleCall(object, kPropertiesInterface, QStringLiteral("Get"));
            name << AtspiBus::kAccessibleInterface << QStringLiteral("Name");
            calls.append(name);
            calls.append(accessibleCall(object, AtspiBus::kAccessibleInterface,
                                        QStringLiteral("GetChildren")));
            QDBusMessage binding =
                accessibleCall(object, AtspiBus::kActionInterface, QStringLiteral("GetKeyBinding"));
            binding << 0;
            calls.append(binding);
        }
        const auto replies = callAll(bus, calls, timeoutMs);
        if (!replies)
            return std::nullopt;
        QList<std::pair<AtspiReference, int>> next;
        for (qsizetype i = 0; i < current.size(); ++i) {
            const int index = current.at(i).second;
            const QDBusMessage& nameReply = replies->at(3 * i);
            std::optional<QString> title;
            if (nameReply.type() == QDBusMessage::ReplyMessage && !nameReply.arguments().isEmpty())
                title = nameReply.arguments()
                            .first()
                            .value<QDBusVariant>()
                            .variant()
                            .toString()
                            .trimmed();
            const QDBusMessage& bindingReply = replies->at(3 * i + 2);
            std::optional<MenuKeyEquivalent> key;
            if (bindingReply.type() == QDBusMessage::ReplyMessage &&
                !bindingReply.arguments().isEmpty()) {
                key = AtspiKeyBinding::parse(bindingReply.arguments().first().toString(),
                                             title.value_or(QString()));
            }
            snapshot.m_nodes[index].title = title;
            snapshot.m_nodes[index].key = key;
            if (depth >= AtspiWalkState::kMaxDepth)
                continue;
            for (const AtspiReference& child : childrenOf(replies->at(3 * i + 1))) {
                if (isNullReference(child) || visited.contains(child.key()) ||
                    visited.size() >= AtspiWalkState::kMaxElements) {
                    continue;
                }
                visited.insert(child.key());
                const int childIndex = static_cast<int>(snapshot.m_nodes.size());
                snapshot.m_nodes.append(Node{});
                snapshot.m_nodes[index].children.append(childIndex);
                next.append({child, childIndex});
            }
        }
        current = next;
    }
    return snapshot;
}

} // namespace Tessaline
