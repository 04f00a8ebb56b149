// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElementFactory.h"

namespace Tessaline {

/// Application elements read the way a plain AT-SPI client reads them: one synchronous libatspi
/// call per question. The application reads menus through AtspiElementFactory's pipelined
/// snapshot; tests compare the two and benchmarks time them.
class AtspiPlainElementFactory final : public AccessibilityElementFactory
{
public:
    AccessibilityElementPtr applicationElement(qint64 processId) override;
};

} // namespace Tessaline
