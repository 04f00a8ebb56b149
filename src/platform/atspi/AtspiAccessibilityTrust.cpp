// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiAccessibilityTrust.h"

#include "platform/atspi/AtspiBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

namespace Tessaline {

namespace {

const QString kService = QStringLiteral("org.a11y.Bus");
const QString kPath = QStringLiteral("/org/a11y/bus");
const QString kStatusInterface = QStringLiteral("org.a11y.Status");
const QString kProperty = QStringLiteral("IsEnabled");
constexpr int kTimeoutMs = 3000;

} // namespace

bool AtspiAccessibilityTrust::isTrusted() const
{
    if (!AtspiBus::address())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << kStatusInterface << kProperty;
    const QDBusReply<QDBusVariant> reply =
        QDBusConnection::sessionBus().call(call, QDBus::Block, kTimeoutMs);
    return reply.isValid() && reply.value().variant().toBool();
}

void AtspiAccessibilityTrust::requestTrust()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
    call << kStatusInterface << kProperty << QVariant::fromValue(QDBusVariant(true));
    QDBusConnection::sessionBus().call(call, QDBus::Block, kTimeoutMs);
}

} // namespace Tessaline
