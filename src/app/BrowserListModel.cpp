// SPDX-License-Identifier: MIT
#include "BrowserListModel.h"

#include "ShortcutListModel.h"

namespace Tessaline {

QList<BrowserListModel::Row>
BrowserListModel::rowsOf(const VaultBrowserIndex& index,
                         const QList<VaultBrowserIndex::RowGroup>& groups)
{
    QList<Row> rows;
    qsizetype total = 0;
    for (const VaultBrowserIndex::RowGroup& group : groups)
        total += group.rows.size();
    rows.reserve(total);
    for (const VaultBrowserIndex::RowGroup& group : groups) {
        for (const qsizetype position : group.rows)
            rows.append(Row{&index, position, group.name});
    }
    return rows;
}

void BrowserListModel::reset(const VaultBrowserIndex& index,
                             const QList<VaultBrowserIndex::RowGroup>& groups, const QString& query)
{
    beginResetModel();
    m_query = query;
    m_rows = rowsOf(index, groups);
    endResetModel();
}

void BrowserListModel::update(const VaultBrowserIndex& index,
                              const QList<VaultBrowserIndex::RowGroup>& groups,
                              const QString& query)
{
    if (query != m_query) {
        reset(index, groups, query);
        return;
    }
    // A row is its group and its shortcut's identity; while the rows change, each one still
    // reads from the index it came from, and every row ends up reading from the new one.
    updateRows(
        m_rows, rowsOf(index, groups),
        [](const Row& row) {
            return ShortcutListModel::rowKey(row.group, row.shortcutRow().shortcut);
        },
        [](const Row& shown, const Row& next) {
            return shown.shortcutRow().shortcut == next.shortcutRow().shortcut;
        });
}

void BrowserListModel::clear()
{
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

int BrowserListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant BrowserListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row& row = m_rows.at(index.row());
    return ShortcutListModel::shortcutData(row.group, row.shortcutRow().shortcut, m_query,
                                           m_keyNames, role);
}

void BrowserListModel::setKeyNameStyle(KeyNameStyle style)
{
    if (style == m_keyNames)
        return;
    m_keyNames = style;
    ShortcutListModel::chordTextsChanged(*this);
}

QHash<int, QByteArray> BrowserListModel::roleNames() const
{
    return ShortcutListModel::shortcutRoleNames();
}

} // namespace Tessaline
