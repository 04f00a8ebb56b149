// SPDX-License-Identifier: MIT
#include "vault/ScanRecord.h"

namespace Tessaline {

ScanRecord ScanRecord::of(const QList<ShortcutItem>& scanned)
{
    ScanRecord record;
    record.items.reserve(scanned.size());
    record.keys.reserve(scanned.size());
    for (const ShortcutItem& item : scanned) {
        const QString key = item.dedupeKey();
        if (record.keys.contains(key))
            continue;
        record.keys.insert(key);
        ShortcutItem kept;
        kept.name = item.name;
        kept.chord = item.chord;
        kept.menu = item.menu;
        record.items.append(std::move(kept));
    }
    return record;
}

} // namespace Tessaline
