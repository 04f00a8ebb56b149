// SPDX-License-Identifier: MIT
#include "ControlInterface.h"

#include "AppDelegate.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace Tessaline {

ControlInterface::ControlInterface(AppDelegate& delegate, QObject* parent)
    : QObject(parent), m_delegate(delegate)
{}

bool ControlInterface::registerOnSessionBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return true; // Without a session bus there is nobody to share with: run alone.
    if (!bus.registerService(QString::fromLatin1(kService)))
        return false;
    bus.registerObject(QString::fromLatin1(kPath), this, QDBusConnection::ExportScriptableSlots);
    return true;
}

bool ControlInterface::showHUDOfRunningInstance()
{
    return callRunningInstance(QStringLiteral("ShowHUD"));
}

bool ControlInterface::callRunningInstance(const QString& method)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const QString service = QString::fromLatin1(kService);
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, QString::fromLatin1(kPath), service, method);
    return bus.call(call, QDBus::Block, 5000).type() == QDBusMessage::ReplyMessage;
}

void ControlInterface::ShowHUD()
{
    m_delegate.showHUD();
}

void ControlInterface::ToggleHUD()
{
    m_delegate.toggleHUD();
}

void ControlInterface::ShowBrowser()
{
    m_delegate.showBrowser();
}

void ControlInterface::ShowSettings()
{
    m_delegate.showSettings();
}

void ControlInterface::ShowOnboarding()
{
    m_delegate.showOnboarding();
}

void ControlInterface::ScanCurrentApp()
{
    m_delegate.scanCurrentAppMenus();
}

void ControlInterface::ScanOpenApps()
{
    m_delegate.scanOpenApps();
}

void ControlInterface::Quit()
{
    QCoreApplication::quit();
}

} // namespace Tessaline
