// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MenuCommandRunner.h"

namespace Tessaline {

/// Reads an application's menus over the accessibility bus one level at a time, each level in
/// one round of pipelined calls (titles, child counts and states of all its entries), and runs
/// an item through its first action.
class AtspiMenuCommandRunner final : public MenuCommandRunner
{
public:
    /// How long one call may take before the application counts as not answering.
    static constexpr int kCallTimeoutMs = 500;

    Expected<MenuEntryList> menuBar(qint64 processId) override;
};

} // namespace Tessaline
