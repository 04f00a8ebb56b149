// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AlertPresenter.h"

#include <QList>

namespace Tessaline::Testing {

/// Records every alert and answers with a preset response.
class FakeAlertPresenter final : public AlertPresenter
{
public:
    struct Alert
    {
        QString message;
        QString informativeText;
        QStringList buttons;
    };

    QList<Alert> shown;
    int response = kFirstButton;

    int runModal(const QString& message, const QString& informativeText,
                 const QStringList& buttons) override
    {
        shown.append(Alert{message, informativeText, buttons});
        return response;
    }
};

} // namespace Tessaline::Testing
