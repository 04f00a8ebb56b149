// SPDX-License-Identifier: MIT
#include "ShortcutListModel.h"

#include "search/FuzzyMatch.h"

#include <QSet>

namespace Tessaline {

void ShortcutListModel::reset(QList<Entry> entries, const QString& query)
{
    beginResetModel();
    m_entries = std::move(entries);
    m_query = query;
    endResetModel();
}

namespace {

// What identifies a row across updates: its group and the item's identity.
QString rowKey(const ShortcutListModel::Entry& entry)
{
    return entry.group + QLatin1Char('\x1f') + entry.item.id();
}

} // namespace

void ShortcutListModel::update(QList<Entry> entries, const QString& query)
{
    if (query != m_query) {
        reset(std::move(entries), query);
        return;
    }
    QSet<QString> wanted;
    wanted.reserve(entries.size());
    for (const Entry& entry : std::as_const(entries))
        wanted.insert(rowKey(entry));

    // Rows that are gone, removed in runs from the end so that indices stay valid.
    for (qsizetype last = m_entries.size() - 1; last >= 0;) {
        if (wanted.contains(rowKey(m_entries.at(last)))) {
            --last;
            continue;
        }
        qsizetype first = last;
        while (first > 0 && !wanted.contains(rowKey(m_entries.at(first - 1))))
            --first;
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last));
        m_entries.remove(first, last - first + 1);
        endRemoveRows();
        last = first - 1;
    }

    // Row by row: keep, move up from further down, or insert.
    for (qsizetype row = 0; row < entries.size(); ++row) {
        const Entry& target = entries.at(row);
        const QString key = rowKey(target);
        qsizetype found = -1;
        for (qsizetype at = row; at < m_entries.size(); ++at) {
            if (rowKey(m_entries.at(at)) == key) {
                found = at;
                break;
            }
        }
        if (found < 0) {
            beginInsertRows({}, static_cast<int>(row), static_cast<int>(row));
            m_entries.insert(row, target);
            endInsertRows();
            continue;
        }
        if (found != row) {
            beginMoveRows({}, static_cast<int>(found), static_cast<int>(found), {},
                          static_cast<int>(row));
            m_entries.move(found, row);
            endMoveRows();
        }
        if (!(m_entries.at(row).item == target.item)) {
            m_entries[row] = target;
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed);
        }
    }

    // Rows left over (an identity listed twice before and once now).
    if (m_entries.size() > entries.size()) {
        beginRemoveRows({}, static_cast<int>(entries.size()),
                        static_cast<int>(m_entries.size() - 1));
        m_entries.resize(entries.size());
        endRemoveRows();
    }
}

int ShortcutListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

QVariant ShortcutListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Entry& entry = m_entries.at(index.row());
    return shortcutData(entry.group, entry.item, m_query, m_keyNames, role);
}

void ShortcutListModel::setKeyNameStyle(KeyNameStyle style)
{
    if (style == m_keyNames)
        return;
    m_keyNames = style;
    chordTextsChanged(*this);
}

void ShortcutListModel::chordTextsChanged(QAbstractListModel& model)
{
    const int rows = model.rowCount();
    if (rows > 0)
        emit model.dataChanged(model.index(0), model.index(rows - 1), {ChordTextRole});
}

QVariant ShortcutListModel::shortcutData(const QString& group, const ShortcutItem& item,
                                         const QString& query, KeyNameStyle keyNames, int role)
{
    switch (role) {
    case GroupRole:
        return group;
    case Qt::DisplayRole:
    case NameRole:
        return item.name;
    case NameHtmlRole:
        return FuzzyMatch::highlighted(item.name, query);
    case ChordRole:
        return item.chord;
    case ChordTextRole:
        return ChordText::display(item.chord, keyNames);
    case DetailRole:
        return item.detailText();
    case FavoriteRole:
        return item.isFavorite();
    case ScannedRole:
        return item.isScanned();
    default:
        return {};
    }
}

QHash<int, QByteArray> ShortcutListModel::roleNames() const
{
    return shortcutRoleNames();
}

QHash<int, QByteArray> ShortcutListModel::shortcutRoleNames()
{
    return {{GroupRole, "group"},     {NameRole, "name"},          {NameHtmlRole, "nameHtml"},
            {ChordRole, "chord"},     {DetailRole, "detail"},      {FavoriteRole, "favorite"},
            {ScannedRole, "scanned"}, {ChordTextRole, "chordText"}};
}

} // namespace Tessaline
