// SPDX-License-Identifier: MIT
#include "vault/VaultShortcutRow.h"

namespace Tessaline {

QString VaultShortcutRow::id() const
{
    return appName + QLatin1Char('|') + shortcut.name + QLatin1Char('|') + shortcut.chord;
}

size_t qHash(const VaultShortcutRow& row, size_t seed) noexcept
{
    QtPrivate::QHashCombine combine;
    seed = combine(seed, row.appName);
    seed = combine(seed, row.bundleID.has_value());
    if (row.bundleID)
        seed = combine(seed, *row.bundleID);
    return combine(seed, row.shortcut);
}

} // namespace Tessaline
