// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

namespace Tessaline::Testing {

/// A clock that only moves when the test says so.
class FakeClock final : public Clock
{
public:
    double seconds = 1'700'000'000.0;
    double now() const override { return seconds; }
};

} // namespace Tessaline::Testing
