// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityTrust.h"

namespace Tessaline {

/// Trust on the accessibility bus: trusted when the bus is reachable and its IsEnabled status is
/// on; the request switches IsEnabled on, so toolkits expose their applications (those already
/// running may need a restart).
class AtspiAccessibilityTrust final : public AccessibilityTrust
{
public:
    bool isTrusted() const override;
    void requestTrust() override;
};

} // namespace Tessaline
