// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QString>

#include <optional>

namespace Tessaline {

/// One row of the all-shortcuts listing: an item with the name and bundle id of its pack (or
/// the global section's title and no bundle id).
struct VaultShortcutRow
{
    QString appName;
    std::optional<QString> bundleID;
    ShortcutItem shortcut;

    /// appName + "|" + shortcut name + "|" + chord.
    QString id() const;

    friend bool operator==(const VaultShortcutRow&, const VaultShortcutRow&) = default;
};

size_t qHash(const VaultShortcutRow& row, size_t seed = 0) noexcept;

} // namespace Tessaline
