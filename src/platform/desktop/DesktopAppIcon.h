// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AppIconLookup.h"

#include <QString>

#include <optional>

namespace Tessaline {

class DesktopEntryLookup;

/// The icon an application shows in menus, taken from its desktop entry.
class DesktopAppIcon final : public AppIconLookup
{
public:
    explicit DesktopAppIcon(const DesktopEntryLookup& entries) : m_entries(entries) {}

    /// The entry's Icon for this bundle id: a themed icon name (for QIcon::fromTheme) or an
    /// absolute file path; absent when the app has no entry or the entry names no icon.
    std::optional<QString> iconName(const QString& bundleID) const override;

private:
    const DesktopEntryLookup& m_entries;
};

} // namespace Tessaline
