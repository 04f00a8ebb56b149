// SPDX-License-Identifier: MIT
#include "vault/ShortcutDrift.h"

namespace Tessaline {

namespace {

const QString kScannedSource = QStringLiteral("scanned-menu");

// Where a command lives: the same title at the same menu path.
QString placeOf(const ShortcutItem& item)
{
    return item.name + QLatin1Char('\x1f') + item.menu.value_or(QString());
}

} // namespace

bool ShortcutDrift::isStale(const ShortcutItem& item, const ScanRecord& lastScan)
{
    return item.source == kScannedSource && !lastScan.contains(item);
}

QHash<QString, ShortcutDrift::Mark> ShortcutDrift::marks(const QList<ShortcutItem>& items,
                                                         const ScanRecord& lastScan)
{
    QHash<QString, Mark> result;
    // The old chord of each place that lost its item, the first stale item's when several.
    QHash<QString, QString> oldChords;
    for (const ShortcutItem& item : items) {
        if (!isStale(item, lastScan))
            continue;
        result[item.id()].stale = true;
        const QString place = placeOf(item);
        if (!oldChords.contains(place))
            oldChords.insert(place, item.chord);
    }
    if (oldChords.isEmpty())
        return result;
    for (const ShortcutItem& item : items) {
        if (!lastScan.contains(item))
            continue;
        const auto old = oldChords.constFind(placeOf(item));
        if (old != oldChords.cend() && *old != item.chord)
            result[item.id()].was = *old;
    }
    return result;
}

QList<ShortcutItem> ShortcutDrift::removeStale(QList<ShortcutItem>& items,
                                               const ScanRecord& lastScan)
{
    QList<ShortcutItem> removed;
    QList<ShortcutItem> kept;
    kept.reserve(items.size());
    for (ShortcutItem& item : items) {
        if (isStale(item, lastScan))
            removed.append(std::move(item));
        else
            kept.append(std::move(item));
    }
    items = std::move(kept);
    return removed;
}

QSet<QString> ShortcutDrift::staleKeys(const QList<ShortcutItem>& items,
                                       const std::optional<ScanRecord>& lastScan)
{
    QSet<QString> keys;
    if (!lastScan)
        return keys;
    for (const ShortcutItem& item : items) {
        if (isStale(item, *lastScan))
            keys.insert(item.dedupeKey());
    }
    return keys;
}

int ShortcutDrift::newlyStale(const QList<ShortcutItem>& before,
                              const std::optional<ScanRecord>& previous,
                              const QList<ShortcutItem>& after, const ScanRecord& scan)
{
    if (!previous)
        return 0;
    const QSet<QString> wasStale = staleKeys(before, previous);
    int count = 0;
    for (const QString& key : staleKeys(after, scan)) {
        if (!wasStale.contains(key))
            ++count;
    }
    return count;
}

} // namespace Tessaline
