// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace Tessaline {

/// Shows application-modal alerts.
class AlertPresenter
{
public:
    /// The response for the first button; the second is kFirstButton + 1, and so on.
    static constexpr int kFirstButton = 1000;

    virtual ~AlertPresenter() = default;
    /// Shows the alert and waits for a button; the first button is the default one.
    virtual int runModal(const QString& message, const QString& informativeText,
                         const QStringList& buttons) = 0;
};

} // namespace Tessaline
