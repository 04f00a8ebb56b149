// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityTrust.h"

namespace Tessaline::Testing {

/// Trust that the test switches on and off; counts the prompts.
class FakeAccessibilityTrust final : public AccessibilityTrust
{
public:
    bool trusted = true;
    int requests = 0;

    bool isTrusted() const override { return trusted; }
    void requestTrust() override { ++requests; }
};

} // namespace Tessaline::Testing
