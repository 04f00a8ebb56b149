// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QList>
#include <QSet>
#include <QString>

namespace Tessaline {

/// What one menu scan of an application found: its shortcuts (name, chord and menu path are
/// what counts) and their duplicate keys, the same keys the merge compares.
struct ScanRecord
{
    QList<ShortcutItem> items;
    QSet<QString> keys;

    /// The record of a scan that found `scanned`; only name, chord and menu are kept.
    static ScanRecord of(const QList<ShortcutItem>& scanned);
    /// Whether the scan found an item with `item`'s duplicate key.
    bool contains(const ShortcutItem& item) const { return keys.contains(item.dedupeKey()); }

    friend bool operator==(const ScanRecord& a, const ScanRecord& b) { return a.items == b.items; }
};

} // namespace Tessaline
