// SPDX-License-Identifier: MIT
#pragma once

#include "search/FuzzyText.h"
#include "vault/BrowserGroup.h"
#include "vault/PreparedShortcutList.h"
#include "vault/VaultShortcutRow.h"

#include <QList>
#include <QString>

namespace Tessaline {

/// The browser's rows prepared once per vault change, so that each keystroke only filters:
/// the grouped order is computed up front (a stable sort keeps its order on any subset), and
/// each row keeps its shortcut in the matcher's prepared form behind a packed pre-check. Results
/// equal those of filtering every row by the query and then grouping what is left.
class VaultBrowserIndex
{
public:
    VaultBrowserIndex() = default;
    explicit VaultBrowserIndex(QList<VaultShortcutRow> allRows);

    /// A group of the browser: its app's name and its rows as positions in allRows().
    struct RowGroup
    {
        QString name;
        QList<qsizetype> rows;
    };

    const QList<VaultShortcutRow>& allRows() const { return m_rows; }

    /// The rows that `query` finds, in the order of allRows().
    QList<VaultShortcutRow> rows(const QString& query) const;
    /// Those rows grouped by app, groups and rows in browser order.
    QList<BrowserGroup> groupedRows(const QString& query) const;
    /// The same groups with positions in allRows() instead of copies of the rows, for a caller
    /// that reads the rows in place (the browser does, at every keystroke).
    QList<RowGroup> groupedRowPositions(const QString& query) const;

private:
    struct Group
    {
        QString name;
        /// Equal for groups whose names the collator cannot tell apart; the global group has 0.
        qsizetype rank = 0;
        /// Indices into m_rows, in the group's display order.
        QList<qsizetype> rowIndices;
    };

    /// One flag per row: whether the trimmed query finds it.
    QList<bool> keptRows(const QString& trimmedQuery) const;

    QList<VaultShortcutRow> m_rows;
    /// The distinct app names and bundle ids in prepared form, matched once per query, and for
    /// each row the indices of its own (-1: no bundle id).
    QList<FuzzyText> m_names;
    QList<qsizetype> m_nameOfRow;
    QList<qsizetype> m_bundleOfRow;
    /// The rows' shortcuts, prepared for searching.
    PreparedShortcutList m_prepared;
    QList<Group> m_groups;
};

} // namespace Tessaline
