// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "platform/atspi/AtspiBus.h"
#include "platform/atspi/AtspiKeyBinding.h"

#include <QDBusConnection>
#include <QList>

#include <optional>

namespace Tessaline {

/// An application's whole menu bar, read in a few rounds of pipelined D-Bus calls: every call
/// of one tree level goes out before the first answer is awaited, so the cost is a handful of
/// round trips instead of several per menu item.
class AtspiMenuSnapshot
{
public:
    struct Node
    {
        std::optional<QString> title;
        std::optional<MenuKeyEquivalent> key;
        QList<int> children;
    };

    /// The application of process `processId` on the accessibility bus.
    static std::optional<AtspiReference> findApplication(const QDBusConnection& bus,
                                                         qint64 processId, int timeoutMs);
    /// Reads the menu bar found under `application` (a frame's descendant). Absent when there is
    /// none or a call went unanswered.
    static std::optional<AtspiMenuSnapshot> read(const QDBusConnection& bus,
                                                 const AtspiReference& application, int timeoutMs);

    /// The connection to ask `application` over: its own direct connection when it offers one,
    /// else `bus`.
    static QDBusConnection channel(const QDBusConnection& bus, const AtspiReference& application,
                                   int timeoutMs);
    /// The menu bar found under `application`, asked over `channel`: null when there is none;
    /// fails when a call went unanswered.
    static Expected<std::optional<AtspiReference>>
    findMenuBar(const QDBusConnection& channel, const AtspiReference& application, int timeoutMs);

    /// The menu bar is node 0.
    const QList<Node>& nodes() const { return m_nodes; }

private:
    static std::optional<QDBusConnection>
    peerConnection(const QDBusConnection& bus, const AtspiReference& application, int timeoutMs);
    static std::optional<AtspiMenuSnapshot>
    readOver(const QDBusConnection& bus, const AtspiReference& application, int timeoutMs);
    // These fail when a call went unanswered; a found nothing is an empty optional.
    static Expected<std::optional<AtspiReference>>
    matchMenuBar(const QDBusConnection& bus, const AtspiReference& application, int timeoutMs);
    static Expected<std::optional<AtspiReference>>
    searchMenuBar(const QDBusConnection& bus, const AtspiReference& application, int timeoutMs);
    /// Empty when the collection interface gives nothing usable, so the level walk is tried.
    static Expected<std::optional<AtspiMenuSnapshot>>
    readByMatches(const QDBusConnection& bus, const AtspiReference& menuBar, int timeoutMs);
    static std::optional<AtspiMenuSnapshot>
    readByLevels(const QDBusConnection& bus, const AtspiReference& menuBar, int timeoutMs);

    QList<Node> m_nodes;
};

} // namespace Tessaline
