// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiEventWatcher.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

namespace Tessaline {

namespace {

constexpr int kRegisterTimeoutMs = 1000;
const QString kEventWindow = QStringLiteral("org.a11y.atspi.Event.Window");
const QString kEventObject = QStringLiteral("org.a11y.atspi.Event.Object");
const QString kActivate = QStringLiteral("Activate");
const QString kDeactivate = QStringLiteral("Deactivate");
const QString kStateChanged = QStringLiteral("StateChanged");

} // namespace

AtspiEventWatcher::AtspiEventWatcher(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus))
{
    for (const QString& event :
         {QStringLiteral("window:activate"), QStringLiteral("window:deactivate"),
          QStringLiteral("object:state-changed:focused")}) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            AtspiBus::kRegistry, QStringLiteral("/org/a11y/atspi/registry"),
            QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("RegisterEvent"));
        call << event << QStringList() << QString();
        m_bus.asyncCall(call, kRegisterTimeoutMs);
    }
    m_bus.connect(QString(), QString(), kEventWindow, kActivate, this,
                  SLOT(activateEvent(QDBusMessage)));
    m_bus.connect(QString(), QString(), kEventWindow, kDeactivate, this,
                  SLOT(deactivateEvent(QDBusMessage)));
    m_bus.connect(QString(), QString(), kEventObject, kStateChanged, this,
                  SLOT(stateChangedEvent(QDBusMessage)));
}

AtspiEventWatcher::~AtspiEventWatcher()
{
    m_bus.disconnect(QString(), QString(), kEventWindow, kActivate, this,
                     SLOT(activateEvent(QDBusMessage)));
    m_bus.disconnect(QString(), QString(), kEventWindow, kDeactivate, this,
                     SLOT(deactivateEvent(QDBusMessage)));
    m_bus.disconnect(QString(), QString(), kEventObject, kStateChanged, this,
                     SLOT(stateChangedEvent(QDBusMessage)));
}

void AtspiEventWatcher::activateEvent(const QDBusMessage& message)
{
    if (!message.service().isEmpty())
        emit windowActivated(message.service());
}

void AtspiEventWatcher::deactivateEvent(const QDBusMessage& message)
{
    if (!message.service().isEmpty())
        emit windowDeactivated(message.service());
}

void AtspiEventWatcher::stateChangedEvent(const QDBusMessage& message)
{
    // StateChanged(state name, 1 when set, ...) from the object whose state changed.
    const QList<QVariant> arguments = message.arguments();
    if (message.service().isEmpty() || arguments.size() < 2 ||
        arguments.at(0).toString() != QLatin1String("focused") || arguments.at(1).toInt() != 1)
        return;
    emit focused(AtspiReference{message.service(), QDBusObjectPath(message.path())});
}

} // namespace Tessaline
