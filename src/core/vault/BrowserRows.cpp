// SPDX-License-Identifier: MIT
#include "vault/BrowserRows.h"

#include "search/FuzzyMatch.h"
#include "vault/ShortcutSearch.h"
#include "vault/VaultOrder.h"
#include "vault/VaultStore.h"

#include <QHash>

#include <algorithm>

namespace Tessaline::BrowserRows {

bool matches(const QString& trimmedQuery, const VaultShortcutRow& row)
{
    return FuzzyMatch::match(trimmedQuery, row.appName).has_value() ||
           (row.bundleID && FuzzyMatch::match(trimmedQuery, *row.bundleID).has_value()) ||
           ShortcutSearch::score(trimmedQuery, row.shortcut).has_value();
}

QList<VaultShortcutRow> rows(const QList<VaultShortcutRow>& allRows, const QString& query)
{
    const QString q = query.trimmed();
    if (q.isEmpty())
        return allRows;
    QList<VaultShortcutRow> kept;
    for (const VaultShortcutRow& row : allRows) {
        if (matches(q, row))
            kept.append(row);
    }
    return kept;
}

QList<BrowserGroup> groupedRows(const QList<VaultShortcutRow>& rows)
{
    QList<BrowserGroup> groups;
    QHash<QString, qsizetype> indexByName;
    for (const VaultShortcutRow& row : rows) {
        auto found = indexByName.constFind(row.appName);
        if (found == indexByName.cend()) {
            found = indexByName.insert(row.appName, groups.size());
            groups.append(BrowserGroup{row.appName, {}});
        }
        groups[*found].rows.append(row);
    }

    const QCollator collator = VaultOrder::nameCollator();
    for (BrowserGroup& group : groups) {
        std::stable_sort(group.rows.begin(), group.rows.end(),
                         [&collator](const VaultShortcutRow& a, const VaultShortcutRow& b) {
                             return collator.compare(a.shortcut.name, b.shortcut.name) < 0;
                         });
    }
    const QString global = VaultStore::globalSectionTitle();
    std::stable_sort(groups.begin(), groups.end(),
                     [&collator, &global](const BrowserGroup& a, const BrowserGroup& b) {
                         const bool aGlobal = a.name == global;
                         const bool bGlobal = b.name == global;
                         if (aGlobal != bGlobal)
                             return aGlobal;
                         return collator.compare(a.name, b.name) < 0;
                     });
    return groups;
}

} // namespace Tessaline::BrowserRows
