// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Tessaline {

/// The welcome window's command, which the application carries out: the view calls it, the
/// window presenter listens to the signal.
class OnboardingCommands : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("OnboardingCommands is created with the welcome window")

public:
    using QObject::QObject;

    /// "Start using Tessaline".
    Q_INVOKABLE
    void complete() { emit completed(); }

signals:
    void completed();
};

} // namespace Tessaline
