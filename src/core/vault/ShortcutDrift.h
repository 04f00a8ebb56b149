// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ScanRecord.h"
#include "vault/ShortcutItem.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace Tessaline {

/// How a pack's items stand against the last scan of its application. Nothing of this is
/// stored in the vault: it follows from the items and the scan history every time.
///
/// An item is stale when it came from a menu scan and the last scan no longer found it (by
/// name and chord): the command left the menus, or its chord changed. An item of the last
/// scan with the same name and menu path as a stale item is that command under its new chord;
/// it remembers the stale item's chord as the one it "was".
class ShortcutDrift
{
public:
    struct Mark
    {
        bool stale = false;
        /// The chord the command had before it changed; empty when it did not change.
        QString was = {};

        friend bool operator==(const Mark&, const Mark&) = default;
    };

    /// Whether `item` is stale against `lastScan`.
    static bool isStale(const ShortcutItem& item, const ScanRecord& lastScan);
    /// The marks of a pack's `items` by item id; items that are neither stale nor changed are
    /// left out.
    static QHash<QString, Mark> marks(const QList<ShortcutItem>& items, const ScanRecord& lastScan);
    /// Takes the stale ones out of `items`, keeping the order of the rest, and returns them.
    static QList<ShortcutItem> removeStale(QList<ShortcutItem>& items, const ScanRecord& lastScan);
    /// The duplicate keys of the stale ones of `items`; none without a last scan.
    static QSet<QString> staleKeys(const QList<ShortcutItem>& items,
                                   const std::optional<ScanRecord>& lastScan);
    /// How many items a scan made stale: stale after it (`after` against `scan`) and not
    /// before it (`before` against `previous`). A chord change counts once, for the old chord.
    /// Zero for the first scan on record, which has nothing to compare with.
    static int newlyStale(const QList<ShortcutItem>& before,
                          const std::optional<ScanRecord>& previous,
                          const QList<ShortcutItem>& after, const ScanRecord& scan);
};

} // namespace Tessaline
