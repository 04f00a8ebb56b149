// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Tessaline {

/// A coach tip panel's two commands: the view calls them, the panel presenter listens to the
/// signals.
class CoachTipCommands : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("CoachTipCommands is created with each coach tip panel")

public:
    using QObject::QObject;

    /// "Not now" (also Escape).
    Q_INVOKABLE
    void dismiss() { emit dismissed(); }
    /// "Don't show again".
    Q_INVOKABLE
    void neverShow() { emit neverShowChosen(); }

signals:
    void dismissed();
    void neverShowChosen();
};

} // namespace Tessaline
