// SPDX-License-Identifier: MIT
#pragma once

namespace Tessaline {

/// Wall-clock time, injectable so that tests can move across time limits.
class Clock
{
public:
    virtual ~Clock() = default;
    /// Seconds since 1970-01-01 UTC.
    virtual double now() const = 0;
};

/// The system's clock.
class SystemClock final : public Clock
{
public:
    double now() const override;
};

} // namespace Tessaline
