// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace Tessaline {

/// Names the icon an application shows in menus.
class AppIconLookup
{
public:
    virtual ~AppIconLookup() = default;
    /// A themed icon name (for QIcon::fromTheme) or an absolute file path for this bundle id;
    /// absent when the desktop knows no icon for it.
    virtual std::optional<QString> iconName(const QString& bundleID) const = 0;
};

} // namespace Tessaline
