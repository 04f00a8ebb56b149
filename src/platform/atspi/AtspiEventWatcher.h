// SPDX-License-Identifier: MIT
#pragma once

#include "platform/atspi/AtspiBus.h"

#include <QDBusConnection>
#include <QObject>

class QDBusMessage;

namespace Tessaline {

/// The accessibility bus's window-activation and focus events, handed on as Qt signals.
/// Applications send only the events some listener asked the registry for, so the watcher asks
/// for them when it starts.
class AtspiEventWatcher : public QObject
{
    Q_OBJECT
public:
    explicit AtspiEventWatcher(QDBusConnection bus, QObject* parent = nullptr);
    ~AtspiEventWatcher() override;

Q_SIGNALS:
    /// A window of the application with this bus name became active.
    void windowActivated(const QString& busName);
    /// The active window of the application with this bus name lost the focus.
    void windowDeactivated(const QString& busName);
    /// `object` took the keyboard focus.
    void focused(const Tessaline::AtspiReference& object);

private Q_SLOTS:
    // QtDBus delivers bus signals to named slots only.
    void activateEvent(const QDBusMessage& message);
    void deactivateEvent(const QDBusMessage& message);
    void stateChangedEvent(const QDBusMessage& message);

private:
    QDBusConnection m_bus;
};

} // namespace Tessaline
