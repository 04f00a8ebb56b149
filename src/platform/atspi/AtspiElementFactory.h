// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElementFactory.h"

namespace Tessaline {

/// Application elements from the desktop's accessibility service (AT-SPI): the whole menu bar
/// read in a few pipelined rounds of D-Bus calls.
class AtspiElementFactory final : public AccessibilityElementFactory
{
public:
    /// Per-call time limit: an application that does not answer costs this, not minutes.
    static constexpr int kCallTimeoutMs = 500;

    AccessibilityElementPtr applicationElement(qint64 processId) override;
};

} // namespace Tessaline
