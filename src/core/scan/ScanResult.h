// SPDX-License-Identifier: MIT
#pragma once

#include "context/TrackedApp.h"
#include "scan/MenuScanError.h"
#include "vault/ShortcutItem.h"

#include <QList>

#include <variant>

namespace Tessaline {

/// The shortcuts read from one application's menu bar, deduplicated and sorted by name.
struct ScanResult
{
    TrackedApp app;
    QList<ShortcutItem> shortcuts;

    friend bool operator==(const ScanResult&, const ScanResult&) = default;
};

/// A scan's outcome: the result, or the error that stopped it before the walk.
using ScanOutcome = std::variant<ScanResult, MenuScanError>;

} // namespace Tessaline
