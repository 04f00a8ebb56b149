// SPDX-License-Identifier: MIT
#include "scan/MenuScanError.h"

namespace Tessaline {

QString MenuScanError::errorDescription() const
{
    switch (kind) {
    case Kind::appNotRunning:
        return QStringLiteral("%1 is not running anymore.").arg(appName);
    case Kind::menuUnavailable:
        return QStringLiteral("Tessaline could not read the menu bar for %1.").arg(appName);
    case Kind::missingBundleID:
        return QStringLiteral("Tessaline could not identify the current app.");
    case Kind::accessibilityNotGranted:
        return QStringLiteral("Accessibility permission is needed to scan menus.");
    }
    return {};
}

} // namespace Tessaline
