// SPDX-License-Identifier: MIT
#pragma once

#include "vault/BrowserRows.h"
#include "vault/ShortcutSearchKey.h"
#include "vault/VaultShortcutRow.h"

#include <QList>
#include <QString>

namespace Tessaline {

/// The browser's rows prepared once per vault change, so that each keystroke only filters:
/// the grouped order is computed up front (a stable sort keeps its order on any subset), and
/// each row carries a quick pre-check of its searchable text. Results equal
/// BrowserRows::groupedRows(BrowserRows::rows(allRows, query)).
class VaultBrowserIndex
{
public:
    VaultBrowserIndex() = default;
    explicit VaultBrowserIndex(QList<VaultShortcutRow> allRows);

    const QList<VaultShortcutRow>& allRows() const { return m_rows; }

    /// The rows that `query` finds, in the order of allRows().
    QList<VaultShortcutRow> rows(const QString& query) const;
    /// Those rows grouped by app, groups and rows in browser order.
    QList<BrowserGroup> groupedRows(const QString& query) const;

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
    QList<ShortcutSearchKey> m_keys;
    QList<Group> m_groups;
};

} // namespace Tessaline
