// SPDX-License-Identifier: MIT
#include "platform/AccessibilityElement.h"

namespace Tessaline {

AccessibilityElement::~AccessibilityElement() = default;

} // namespace Tessaline
