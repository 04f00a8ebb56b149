// SPDX-License-Identifier: MIT
#include "FakeScanDesktop.h"

#include <QSignalSpy>

namespace Tessaline::Testing {

bool FakeScanDesktop::waitForScan(int timeoutMs)
{
    if (!scanner.isScanning())
        return true;
    QSignalSpy finished(&scanner, &AppMenuScanner::scanFinished);
    return finished.wait(timeoutMs);
}

} // namespace Tessaline::Testing
