// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElement.h"

namespace Tessaline {

/// Creates the accessibility element of a running application.
class AccessibilityElementFactory
{
public:
    virtual ~AccessibilityElementFactory() = default;
    /// The application element of the process `processId`; null when the desktop's
    /// accessibility service does not know that process.
    virtual AccessibilityElementPtr applicationElement(qint64 processId) = 0;
};

} // namespace Tessaline
