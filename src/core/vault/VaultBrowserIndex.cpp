// SPDX-License-Identifier: MIT
#include "vault/VaultBrowserIndex.h"

#include "search/FuzzyMatch.h"
#include "vault/PreparedShortcut.h"
#include "vault/VaultOrder.h"
#include "vault/VaultStore.h"

#include <QCollator>
#include <QHash>

#include <algorithm>

namespace Tessaline {

VaultBrowserIndex::VaultBrowserIndex(QList<VaultShortcutRow> allRows) : m_rows(std::move(allRows))
{
    QList<ShortcutItem> shortcuts;
    shortcuts.reserve(m_rows.size());
    for (const VaultShortcutRow& row : std::as_const(m_rows))
        shortcuts.append(row.shortcut);
    m_prepared = PreparedShortcutList(shortcuts);

    QHash<QString, qsizetype> textIndex;
    const auto indexOfText = [&](const QString& text) {
        auto found = textIndex.constFind(text);
        if (found == textIndex.cend()) {
            found = textIndex.insert(text, m_names.size());
            m_names.append(FuzzyText(text));
        }
        return *found;
    };
    m_nameOfRow.reserve(m_rows.size());
    m_bundleOfRow.reserve(m_rows.size());
    for (const VaultShortcutRow& row : std::as_const(m_rows)) {
        m_nameOfRow.append(indexOfText(row.appName));
        m_bundleOfRow.append(row.bundleID ? indexOfText(*row.bundleID) : -1);
    }

    QHash<QString, qsizetype> indexByName;
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        auto found = indexByName.constFind(m_rows[i].appName);
        if (found == indexByName.cend()) {
            found = indexByName.insert(m_rows[i].appName, m_groups.size());
            m_groups.append(Group{m_rows[i].appName, 0, {}});
        }
        m_groups[*found].rowIndices.append(i);
    }

    // Sort keys make the one-time sort cheap; they order exactly as the collator compares.
    const QCollator collator = VaultOrder::nameCollator();
    QList<QCollatorSortKey> nameKeys;
    nameKeys.reserve(m_rows.size());
    for (const VaultShortcutRow& row : std::as_const(m_rows))
        nameKeys.append(collator.sortKey(row.shortcut.name));
    for (Group& group : m_groups) {
        std::stable_sort(
            group.rowIndices.begin(), group.rowIndices.end(),
            [&nameKeys](qsizetype a, qsizetype b) { return nameKeys[a].compare(nameKeys[b]) < 0; });
    }

    // By name, with the global list ahead of every app.
    VaultOrder::sortByName(m_groups,
                           [](const Group& group) -> const QString& { return group.name; });
    const QString global = VaultStore::globalSectionTitle();
    std::stable_partition(m_groups.begin(), m_groups.end(),
                          [&global](const Group& group) { return group.name == global; });
    qsizetype rank = 0;
    for (qsizetype i = 0; i < m_groups.size(); ++i) {
        if (i > 0 && (m_groups[i - 1].name == global ||
                      collator.compare(m_groups[i - 1].name, m_groups[i].name) != 0))
            ++rank;
        m_groups[i].rank = rank;
    }
}

QList<bool> VaultBrowserIndex::keptRows(const QString& trimmedQuery) const
{
    QList<bool> kept(m_rows.size(), true);
    if (trimmedQuery.isEmpty())
        return kept;

    const PreparedShortcut::Query query = PreparedShortcut::Query::fromTyped(trimmedQuery);
    // App names and bundle ids repeat across a pack's rows: each distinct one is matched once.
    QList<bool> textMatches(m_names.size());
    for (qsizetype i = 0; i < m_names.size(); ++i)
        textMatches[i] = FuzzyMatch::matchScore(query.fuzzy, m_names[i]).has_value();
    bool* const keep = kept.data();
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        const qsizetype bundle = m_bundleOfRow[i];
        keep[i] = textMatches[m_nameOfRow[i]] || (bundle >= 0 && textMatches[bundle]) ||
                  m_prepared.matches(i, query);
    }
    return kept;
}

QList<VaultShortcutRow> VaultBrowserIndex::rows(const QString& query) const
{
    const QList<bool> kept = keptRows(query.trimmed());
    QList<VaultShortcutRow> result;
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        if (kept[i])
            result.append(m_rows[i]);
    }
    return result;
}

QList<VaultBrowserIndex::RowGroup>
VaultBrowserIndex::groupedRowPositions(const QString& query) const
{
    const QList<bool> kept = keptRows(query.trimmed());
    struct Found
    {
        qsizetype rank;
        qsizetype firstRow;
        RowGroup group;
    };
    QList<Found> found;
    for (const Group& group : m_groups) {
        Found entry{group.rank, m_rows.size(), RowGroup{group.name, {}}};
        for (const qsizetype index : group.rowIndices) {
            if (!kept[index])
                continue;
            entry.group.rows.append(index);
            entry.firstRow = std::min(entry.firstRow, index);
        }
        if (!entry.group.rows.isEmpty())
            found.append(std::move(entry));
    }
    // Groups the collator cannot tell apart keep the order in which the filtered rows first
    // show them, as a stable sort of the filtered rows would.
    std::stable_sort(found.begin(), found.end(), [](const Found& a, const Found& b) {
        return a.rank != b.rank ? a.rank < b.rank : a.firstRow < b.firstRow;
    });
    QList<RowGroup> result;
    result.reserve(found.size());
    for (Found& entry : found)
        result.append(std::move(entry.group));
    return result;
}

QList<BrowserGroup> VaultBrowserIndex::groupedRows(const QString& query) const
{
    QList<BrowserGroup> result;
    for (const RowGroup& positions : groupedRowPositions(query)) {
        BrowserGroup group{positions.name, {}};
        group.rows.reserve(positions.rows.size());
        for (const qsizetype index : positions.rows)
            group.rows.append(m_rows[index]);
        result.append(std::move(group));
    }
    return result;
}

} // namespace Tessaline
