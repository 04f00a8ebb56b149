// SPDX-License-Identifier: MIT
#include "platform/desktop/DesktopAppIcon.h"

#include "platform/desktop/DesktopEntryLookup.h"

namespace Tessaline {

std::optional<QString> DesktopAppIcon::iconName(const QString& bundleID) const
{
    const std::optional<DesktopEntryInfo> entry = m_entries.entry(bundleID);
    if (!entry || entry->icon.isEmpty())
        return std::nullopt;
    return entry->icon;
}

} // namespace Tessaline
