// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAccessibilityElement.h"
#include "FakeAccessibilityTrust.h"
#include "FakeAlertPresenter.h"
#include "FakeWorkspace.h"
#include "scan/AppMenuScanner.h"

namespace Tessaline::Testing {

/// A menu scanner over a faked desktop: the running apps, the accessibility permission, the
/// apps' accessibility trees and the alerts are all fakes a test fills and reads.
class FakeScanDesktop
{
public:
    FakeWorkspace workspace;
    FakeAccessibilityTrust trust;
    FakeAccessibilityElementFactory elements;
    FakeAlertPresenter alerts;
    AppMenuScanner scanner{workspace, trust, elements, alerts};

    /// Runs the event loop until the scanner reports the end of its scan (at once when none
    /// runs); false when it has not ended within `timeoutMs`.
    bool waitForScan(int timeoutMs = 5000);
};

} // namespace Tessaline::Testing
