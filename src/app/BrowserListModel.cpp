// SPDX-License-Identifier: MIT
#include "BrowserListModel.h"

#include "ShortcutListModel.h"

namespace Tessaline {

void BrowserListModel::reset(const VaultBrowserIndex& index,
                             const QList<VaultBrowserIndex::RowGroup>& groups, const QString& query)
{
    beginResetModel();
    m_index = &index;
    m_query = query;
    m_groupNames.clear();
    m_positions.clear();
    m_groupOfRow.clear();
    qsizetype total = 0;
    for (const VaultBrowserIndex::RowGroup& group : groups)
        total += group.rows.size();
    m_positions.reserve(total);
    m_groupOfRow.reserve(total);
    for (const VaultBrowserIndex::RowGroup& group : groups) {
        const qsizetype groupIndex = m_groupNames.size();
        m_groupNames.append(group.name);
        m_positions.append(group.rows);
        m_groupOfRow.insert(m_groupOfRow.size(), group.rows.size(), groupIndex);
    }
    endResetModel();
}

void BrowserListModel::clear()
{
    beginResetModel();
    m_index = nullptr;
    m_groupNames.clear();
    m_positions.clear();
    m_groupOfRow.clear();
    endResetModel();
}

int BrowserListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_positions.size());
}

QVariant BrowserListModel::data(const QModelIndex& index, int role) const
{
    if (!m_index ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const VaultShortcutRow& row = m_index->allRows().at(m_positions.at(index.row()));
    return ShortcutListModel::shortcutData(m_groupNames.at(m_groupOfRow.at(index.row())),
                                           row.shortcut, m_query, m_keyNames, role);
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
