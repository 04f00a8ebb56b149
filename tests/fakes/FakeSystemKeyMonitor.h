// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemKeyMonitor.h"

namespace Tessaline::Testing {

/// A key monitor the test feeds by hand; counts starts and stops.
class FakeSystemKeyMonitor final : public SystemKeyMonitor
{
public:
    bool available = true;
    /// What unavailableReason() says.
    QString reason;
    int starts = 0;
    int stops = 0;
    Handler handler;

    bool start(Handler newHandler) override
    {
        ++starts;
        if (!available)
            return false;
        handler = std::move(newHandler);
        return true;
    }
    void stop() override
    {
        ++stops;
        handler = nullptr;
    }
    QString unavailableReason() const override { return reason; }
    bool isRunning() const { return static_cast<bool>(handler); }

    /// Delivers `event` as the desktop would; false when nobody listens.
    bool deliver(const SystemKeyEvent& event) const
    {
        if (!handler)
            return false;
        handler(event);
        return true;
    }
};

} // namespace Tessaline::Testing
