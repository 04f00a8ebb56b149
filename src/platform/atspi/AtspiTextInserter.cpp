// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiTextInserter.h"

#include "LogCategories.h"
#include "platform/atspi/AtspiEventWatcher.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>

#include <atspi/atspi-constants.h>

namespace Tessaline {

namespace {

// The application is busy with the user's own typing at most; it answers quickly or not at all.
constexpr int kCallTimeoutMs = 1000;
const QString kTextInterface = QStringLiteral("org.a11y.atspi.Text");
const QString kEditableTextInterface = QStringLiteral("org.a11y.atspi.EditableText");

QDBusMessage call(const AtspiReference& object, const QString& interface, const QString& method)
{
    return QDBusMessage::createMethodCall(object.service, object.path.path(), interface, method);
}

// The first argument of a reply, unwrapped from a variant; nothing for an error.
std::optional<QVariant> answer(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    QVariant value = reply.arguments().first();
    if (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool hasStates(const QVariant& stateSet, std::initializer_list<AtspiStateType> wanted)
{
    if (stateSet.userType() != qMetaTypeId<QDBusArgument>())
        return false;
    QList<quint32> words;
    stateSet.value<QDBusArgument>() >> words;
    for (AtspiStateType state : wanted) {
        const int word = state / 32;
        if (word >= words.size() || (words.at(word) & (1u << (state % 32))) == 0)
            return false;
    }
    return true;
}

} // namespace

AtspiTextInserter::AtspiTextInserter(QObject* parent)
    : QObject(parent), m_bus(AtspiBus::connection()), m_ownPid(QCoreApplication::applicationPid())
{
    if (!m_bus)
        return;
    m_events = std::make_unique<AtspiEventWatcher>(*m_bus);
    connect(m_events.get(), &AtspiEventWatcher::focused, this, &AtspiTextInserter::noteFocus);
}

AtspiTextInserter::~AtspiTextInserter() = default;

void AtspiTextInserter::noteFocus(const AtspiReference& object)
{
    if (isOwn(object.service))
        return;
    qCDebug(lcAtspi) << "focused:" << object.key();
    m_focused = object;
}

bool AtspiTextInserter::isOwn(const QString& busName) const
{
    const auto known = m_own.constFind(busName);
    if (known != m_own.constEnd())
        return *known;
    QDBusMessage pidCall = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"));
    pidCall << busName;
    const std::optional<QVariant> pid = answer(m_bus->call(pidCall, QDBus::Block, kCallTimeoutMs));
    const bool own = pid && pid->toLongLong() == m_ownPid;
    if (pid)
        m_own.insert(busName, own);
    return own;
}

bool AtspiTextInserter::insertAtCaret(const QString& text)
{
    if (!m_bus || !m_focused || text.isEmpty()) {
        qCDebug(lcAtspi) << "no focused field seen to insert into";
        return false;
    }
    const AtspiReference target = *m_focused;
    // Still the focused, editable field the user left?
    const std::optional<QVariant> states =
        answer(m_bus->call(call(target, AtspiBus::kAccessibleInterface, QStringLiteral("GetState")),
                           QDBus::Block, kCallTimeoutMs));
    if (!states || !hasStates(*states, {ATSPI_STATE_FOCUSED, ATSPI_STATE_EDITABLE})) {
        qCDebug(lcAtspi) << "the last focused object" << target.key()
                         << "is no longer a focused, editable field";
        return false;
    }

    QDBusMessage caretCall =
        call(target, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    caretCall << kTextInterface << QStringLiteral("CaretOffset");
    const std::optional<QVariant> caret =
        answer(m_bus->call(caretCall, QDBus::Block, kCallTimeoutMs));
    if (!caret) {
        qCDebug(lcAtspi) << "the focused object" << target.key() << "has no caret";
        return false;
    }
    const int position = std::max(0, caret->toInt());
    // The caret counts characters; the inserted length is read as bytes of UTF-8 by GTK, and Qt
    // takes at most that many characters, which is then the whole text.
    const int characters = static_cast<int>(text.toUcs4().size());
    const int bytes = static_cast<int>(text.toUtf8().size());

    QDBusMessage insert = call(target, kEditableTextInterface, QStringLiteral("InsertText"));
    insert << position << text << bytes;
    const std::optional<QVariant> inserted =
        answer(m_bus->call(insert, QDBus::Block, kCallTimeoutMs));
    if (!inserted || !inserted->toBool()) {
        qCInfo(lcAtspi) << "the focused field refused the inserted text";
        return false;
    }
    QDBusMessage moveCaret = call(target, kTextInterface, QStringLiteral("SetCaretOffset"));
    moveCaret << position + characters;
    m_bus->call(moveCaret, QDBus::Block, kCallTimeoutMs);
    qCDebug(lcAtspi) << "inserted" << characters << "characters at" << position << "into"
                     << target.key();
    return true;
}

} // namespace Tessaline
