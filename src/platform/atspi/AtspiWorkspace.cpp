// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiWorkspace.h"

#include "LogCategories.h"
#include "platform/atspi/AtspiBus.h"
#include "platform/atspi/AtspiEventWatcher.h"
#include "platform/desktop/DesktopEntryLookup.h"
#include "platform/desktop/ProcessAppIdentity.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>

namespace Tessaline {

namespace {

// Calls to applications are answered quickly or not at all: a hung application must not hold
// the tracker up for long.
constexpr int kCallTimeoutMs = 500;
// The "active" bit of an accessible's state set.
constexpr quint32 kStateActive = 1u << 1;

const QString kComponentInterface = QStringLiteral("org.a11y.atspi.Component");

QDBusMessage accessibleCall(const AtspiReference& object, const QString& method)
{
    return QDBusMessage::createMethodCall(object.service, object.path.path(),
                                          AtspiBus::kAccessibleInterface, method);
}

QDBusMessage propertyCall(const QString& service, const QString& property)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, AtspiBus::kRootPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    call << AtspiBus::kAccessibleInterface << property;
    return call;
}

QVariant firstArgument(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    QVariant value = reply.arguments().first();
    if (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool hasActiveState(const QDBusMessage& reply)
{
    const QVariant value = firstArgument(reply);
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return false;
    QList<quint32> states;
    value.value<QDBusArgument>() >> states;
    return !states.isEmpty() && (states.first() & kStateActive) != 0;
}

} // namespace

AtspiWorkspace::AtspiWorkspace(const DesktopEntryLookup& entries, QObject* parent)
    : Workspace(parent), m_entries(entries),
      m_identity(std::make_unique<ProcessAppIdentity>(entries)), m_bus(AtspiBus::connection()),
      m_ownPid(QCoreApplication::applicationPid())
{
    if (!m_bus) {
        qCInfo(lcAtspi) << "no accessibility bus: no applications are seen";
        return;
    }
    m_events = std::make_unique<AtspiEventWatcher>(*m_bus);
    connect(m_events.get(), &AtspiEventWatcher::windowActivated, this, &AtspiWorkspace::noteActive);
    connect(m_events.get(), &AtspiEventWatcher::windowDeactivated, this,
            &AtspiWorkspace::noteInactive);
    connect(m_events.get(), &AtspiEventWatcher::focused, this,
            [this](const AtspiReference& object) { noteActive(object.service); });
}

AtspiWorkspace::~AtspiWorkspace() = default;

void AtspiWorkspace::noteActive(const QString& busName)
{
    if (busName.isEmpty())
        return;
    const std::optional<RunningApplication> application = applicationOf(busName);
    if (!application)
        return; // Tessaline's own windows leave the application in front as it was.
    m_order.activated(busName);
    if (m_frontBusName == busName)
        return;
    m_frontBusName = busName;
    emit applicationActivated(application);
}

void AtspiWorkspace::noteInactive(const QString& busName)
{
    // A window that loses the focus may have called itself active a moment before, after the
    // window that took the focus: the application activated before it is in front again.
    if (!m_order.deactivated(busName) || !m_order.front() || m_frontBusName == m_order.front())
        return;
    const std::optional<RunningApplication> application = applicationOf(*m_order.front());
    if (!application)
        return;
    m_frontBusName = m_order.front();
    emit applicationActivated(application);
}

std::optional<RunningApplication> AtspiWorkspace::applicationOf(const QString& busName) const
{
    if (!m_bus)
        return std::nullopt;
    const auto cached = m_known.constFind(busName);
    if (cached != m_known.constEnd())
        return *cached;

    QDBusMessage pidCall = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"));
    pidCall << busName;
    // The bus answers for the process; only another process is asked for its name: Tessaline's
    // own accessibility interface runs on this thread and would answer only after the wait.
    const auto pidReply = AtspiBus::callAll(*m_bus, {pidCall}, kCallTimeoutMs);
    const qint64 pid = pidReply ? firstArgument(pidReply->first()).toLongLong() : 0;
    if (pidReply && pid == m_ownPid) {
        m_known.insert(busName, std::nullopt);
        return std::nullopt;
    }
    const auto replies =
        pidReply ? AtspiBus::callAll(*m_bus, {propertyCall(busName, QStringLiteral("Name"))},
                                     kCallTimeoutMs)
                 : std::nullopt;
    std::optional<RunningApplication> result;
    if (replies) {
        const QString name = firstArgument(replies->at(0)).toString();
        if (pid > 0 || !name.isEmpty()) {
            RunningApplication application;
            application.processId = pid;
            application.bundleIdentifier = m_identity->bundleIdentifier(pid, name);
            if (application.bundleIdentifier) {
                if (const auto entry = m_entries.entry(*application.bundleIdentifier))
                    application.localizedName = entry->name;
            }
            if (!application.localizedName && !name.isEmpty())
                application.localizedName = name;
            result = application;
        }
    }
    // Unanswered lookups are tried again next time; answered ones are kept while the
    // application's bus name lives (bus names are never reused).
    if (replies)
        m_known.insert(busName, result);
    return result;
}

QList<AtspiWorkspace::Registered> AtspiWorkspace::registeredApplications(bool withWindowsOnly) const
{
    QList<Registered> found;
    if (!m_bus)
        return found;
    const auto registry =
        AtspiBus::callAll(*m_bus,
                          {QDBusMessage::createMethodCall(AtspiBus::kRegistry, AtspiBus::kRootPath,
                                                          AtspiBus::kAccessibleInterface,
                                                          QStringLiteral("GetChildren"))},
                          kCallTimeoutMs);
    if (!registry)
        return found;
    // One application that does not answer must not hide the others: ask each on its own.
    for (const AtspiReference& registered : AtspiBus::childrenOf(registry->first())) {
        const QString busName = registered.service;
        // Asked first: it leaves out Tessaline itself, which cannot answer while it waits here.
        const std::optional<RunningApplication> application = applicationOf(busName);
        if (!application)
            continue;
        if (withWindowsOnly) {
            const auto count = AtspiBus::callAll(
                *m_bus, {propertyCall(busName, QStringLiteral("ChildCount"))}, kCallTimeoutMs);
            if (!count || firstArgument(count->first()).toInt() < 1)
                continue;
        }
        found.append(Registered{busName, *application});
    }
    return found;
}

std::optional<QList<AtspiReference>> AtspiWorkspace::windowsOf(const QString& busName) const
{
    const auto windows = AtspiBus::callAll(
        *m_bus,
        {accessibleCall(AtspiReference{busName, QDBusObjectPath(AtspiBus::kRootPath)},
                        QStringLiteral("GetChildren"))},
        kCallTimeoutMs);
    if (!windows)
        return std::nullopt;
    return AtspiBus::childrenOf(windows->first());
}

std::optional<QString> AtspiWorkspace::activeBusName() const
{
    for (const Registered& registered : registeredApplications(true)) {
        const std::optional<QList<AtspiReference>> windows = windowsOf(registered.busName);
        if (!windows)
            continue;
        QList<QDBusMessage> states;
        for (const AtspiReference& window : *windows)
            states.append(accessibleCall(window, QStringLiteral("GetState")));
        const auto replies = AtspiBus::callAll(*m_bus, states, kCallTimeoutMs);
        if (replies && std::any_of(replies->cbegin(), replies->cend(), hasActiveState))
            return registered.busName;
    }
    return std::nullopt;
}

std::optional<RunningApplication> AtspiWorkspace::frontmostApplication() const
{
    // The window that says it is active wins over the last event, which may still be on its
    // way; while Tessaline's own window is active, the last application seen stays in front.
    if (const std::optional<QString> active = activeBusName())
        m_frontBusName = active;
    if (!m_frontBusName)
        return std::nullopt;
    return applicationOf(*m_frontBusName);
}

QList<RunningApplication> AtspiWorkspace::runningApplications() const
{
    QList<RunningApplication> running;
    for (const Registered& registered : registeredApplications(true))
        running.append(registered.application);
    return running;
}

bool AtspiWorkspace::activate(const RunningApplication& application)
{
    for (const Registered& registered : registeredApplications(true)) {
        if (registered.application.processId != application.processId)
            continue;
        const std::optional<QList<AtspiReference>> frames = windowsOf(registered.busName);
        if (!frames || frames->isEmpty())
            return false;
        const auto grabbed = AtspiBus::callAll(
            *m_bus,
            {QDBusMessage::createMethodCall(frames->first().service, frames->first().path.path(),
                                            kComponentInterface, QStringLiteral("GrabFocus"))},
            kCallTimeoutMs);
        return grabbed && firstArgument(grabbed->first()).toBool();
    }
    return false;
}

} // namespace Tessaline
