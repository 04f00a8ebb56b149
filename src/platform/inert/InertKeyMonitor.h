// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemKeyMonitor.h"

namespace Tessaline {

/// A key monitor for a session that offers no system-wide key events: it never starts, so no
/// coach tip is ever triggered by a key.
class InertKeyMonitor final : public SystemKeyMonitor
{
public:
    bool start(Handler) override { return false; }
    void stop() override {}
};

} // namespace Tessaline
