// SPDX-License-Identifier: MIT
#include "vault/AppShortcutPack.h"

namespace Tessaline {

size_t qHash(const AppShortcutPack& pack, size_t seed) noexcept
{
    QtPrivate::QHashCombine combine;
    seed = combine(seed, pack.name);
    seed = combine(seed, pack.bundleID.has_value());
    if (pack.bundleID)
        seed = combine(seed, *pack.bundleID);
    seed = combine(seed, pack.shortcuts.size());
    for (const ShortcutItem& item : pack.shortcuts)
        seed = combine(seed, item);
    return seed;
}

} // namespace Tessaline
