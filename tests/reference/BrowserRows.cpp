// SPDX-License-Identifier: MIT
#include "BrowserRows.h"

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

    for (BrowserGroup& group : groups)
        VaultOrder::sortByName(group.rows, [](const VaultShortcutRow& row) -> const QString& {
            return row.shortcut.name;
        });
    // By name, with the global list ahead of every app.
    VaultOrder::sortByName(groups,
                           [](const BrowserGroup& group) -> const QString& { return group.name; });
    const QString global = VaultStore::globalSectionTitle();
    std::stable_partition(groups.begin(), groups.end(),
                          [&global](const BrowserGroup& group) { return group.name == global; });
    return groups;
}

} // namespace Tessaline::BrowserRows
