// SPDX-License-Identifier: MIT
#include "ShortcutListModel.h"

#include "search/FuzzyMatch.h"

namespace Tessaline {

void ShortcutListModel::reset(QList<Entry> entries, const QString& query)
{
    beginResetModel();
    m_entries = std::move(entries);
    m_query = query;
    endResetModel();
}

int ShortcutListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

bool ShortcutListModel::isScanned(const ShortcutItem& item)
{
    return item.source == QStringLiteral("scanned-menu") ||
           (item.tags && item.tags->contains(QStringLiteral("scanned")));
}

QVariant ShortcutListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Entry& entry = m_entries.at(index.row());
    switch (role) {
    case GroupRole:
        return entry.group;
    case Qt::DisplayRole:
    case NameRole:
        return entry.item.name;
    case NameHtmlRole:
        return FuzzyMatch::highlighted(entry.item.name, m_query);
    case ChordRole:
        return entry.item.chord;
    case DetailRole:
        return entry.item.detailText();
    case FavoriteRole:
        return entry.item.isFavorite();
    case ScannedRole:
        return isScanned(entry.item);
    default:
        return {};
    }
}

QHash<int, QByteArray> ShortcutListModel::roleNames() const
{
    return {{GroupRole, "group"},    {NameRole, "name"},     {NameHtmlRole, "nameHtml"},
            {ChordRole, "chord"},    {DetailRole, "detail"}, {FavoriteRole, "favorite"},
            {ScannedRole, "scanned"}};
}

} // namespace Tessaline
