// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiMenuCommandRunner.h"

#include "LogCategories.h"
#include "platform/atspi/AtspiBus.h"
#include "platform/atspi/AtspiMenuSnapshot.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>

#include <atspi/atspi-constants.h>

namespace Tessaline {

namespace {

const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// An item's action may open a dialog of its own before it answers: a call that waits longer
// than this is taken as under way.
constexpr int kActionAnswerMs = 300;

Unexpected<QString> notAnswering()
{
    return Unexpected(QStringLiteral("the app did not answer"));
}

using AtspiBus::accessibleCall;

// The value of a Properties.Get reply; invalid for an error.
QVariant propertyOf(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

bool hasState(const QDBusMessage& reply, int state)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return false;
    const QList<quint32> words = qdbus_cast<QList<quint32>>(reply.arguments().first());
    const int word = state / 32;
    return word < words.size() && (words.at(word) & (1u << (state % 32)));
}

class AtspiMenuEntry final : public MenuEntry
{
public:
    AtspiMenuEntry(QDBusConnection channel, AtspiReference object, QString title, int childCount,
                   bool enabled)
        : m_channel(std::move(channel)), m_object(std::move(object)), m_title(std::move(title)),
          m_childCount(childCount), m_enabled(enabled)
    {}

    QString title() const override { return m_title; }
    bool isEnabled() const override { return m_enabled; }
    bool hasChildren() const override { return m_childCount > 0; }
    Expected<MenuEntryList> children() const override;
    Expected<void> activate() override;

    /// The entries under `parent`, their titles, child counts and states read in one round.
    static Expected<MenuEntryList> entriesUnder(const QDBusConnection& channel,
                                                const AtspiReference& parent);

private:
    QDBusConnection m_channel;
    AtspiReference m_object;
    QString m_title;
    int m_childCount = 0;
    bool m_enabled = false;
};

Expected<MenuEntryList> AtspiMenuEntry::entriesUnder(const QDBusConnection& channel,
                                                     const AtspiReference& parent)
{
    const auto listed = AtspiBus::callAll(
        channel,
        {accessibleCall(parent, AtspiBus::kAccessibleInterface, QStringLiteral("GetChildren"))},
        AtspiMenuCommandRunner::kCallTimeoutMs);
    if (!listed)
        return notAnswering();
    QList<AtspiReference> children;
    for (const AtspiReference& child : AtspiBus::childrenOf(listed->first())) {
        if (!AtspiBus::isNullReference(child))
            children.append(child);
    }
    // Name and ChildCount one by one: not every toolkit answers GetAll for them.
    constexpr int kCallsPerChild = 3;
    QList<QDBusMessage> calls;
    for (const AtspiReference& child : children) {
        for (const QString& property : {QStringLiteral("Name"), QStringLiteral("ChildCount")}) {
            QDBusMessage get = accessibleCall(child, kPropertiesInterface, QStringLiteral("Get"));
            get << AtspiBus::kAccessibleInterface << property;
            calls.append(get);
        }
        calls.append(
            accessibleCall(child, AtspiBus::kAccessibleInterface, QStringLiteral("GetState")));
    }
    const auto replies = AtspiBus::callAll(channel, calls, AtspiMenuCommandRunner::kCallTimeoutMs);
    if (!replies)
        return notAnswering();
    MenuEntryList entries;
    for (qsizetype i = 0; i < children.size(); ++i) {
        const qsizetype first = kCallsPerChild * i;
        const QString title = propertyOf(replies->at(first)).toString().trimmed();
        const int childCount = propertyOf(replies->at(first + 1)).toInt();
        const QDBusMessage& state = replies->at(first + 2);
        const bool enabled =
            hasState(state, ATSPI_STATE_ENABLED) || hasState(state, ATSPI_STATE_SENSITIVE);
        entries.append(
            std::make_shared<AtspiMenuEntry>(channel, children.at(i), title, childCount, enabled));
    }
    return entries;
}

Expected<MenuEntryList> AtspiMenuEntry::children() const
{
    return entriesUnder(m_channel, m_object);
}

Expected<void> AtspiMenuEntry::activate()
{
    QDBusMessage call =
        accessibleCall(m_object, AtspiBus::kActionInterface, QStringLiteral("DoAction"));
    call << 0;
    const auto replies = AtspiBus::callAll(m_channel, {call}, kActionAnswerMs);
    if (!replies) {
        // Still busy with it (a dialog the item opened, say): the action is under way.
        qCDebug(lcAtspi, "menu action of %s still running", qUtf8Printable(m_title));
        return {};
    }
    const QDBusMessage& reply = replies->first();
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
        reply.arguments().first().toBool()) {
        return {};
    }
    qCDebug(lcAtspi, "menu action of %s refused: %s", qUtf8Printable(m_title),
            qUtf8Printable(reply.errorMessage()));
    return Unexpected(QStringLiteral("the app refused the menu action"));
}

} // namespace

Expected<MenuEntryList> AtspiMenuCommandRunner::menuBar(qint64 processId)
{
    const auto bus = AtspiBus::connection();
    if (!bus)
        return Unexpected(QStringLiteral("the accessibility bus is not running"));
    const auto application = AtspiMenuSnapshot::findApplication(*bus, processId, kCallTimeoutMs);
    if (!application)
        return Unexpected(QStringLiteral("the app is not on the accessibility bus"));
    const QDBusConnection channel = AtspiMenuSnapshot::channel(*bus, *application, kCallTimeoutMs);
    const auto menuBar = AtspiMenuSnapshot::findMenuBar(channel, *application, kCallTimeoutMs);
    if (!menuBar)
        return notAnswering();
    if (!*menuBar)
        return Unexpected(QStringLiteral("the app shows no menu bar"));
    return AtspiMenuEntry::entriesUnder(channel, **menuBar);
}

} // namespace Tessaline
