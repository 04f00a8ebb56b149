// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AlertPresenter.h"

namespace Tessaline {

/// Application-modal alerts as message boxes; the first button is the default one.
class MessageBoxAlertPresenter final : public AlertPresenter
{
public:
    int runModal(const QString& message, const QString& informativeText,
                 const QStringList& buttons) override;
};

} // namespace Tessaline
