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

QString ShortcutListModel::rowKey(const QString& group, const ShortcutItem& item)
{
    return group + QLatin1Char('\x1f') + item.id();
}

void ShortcutListModel::update(QList<Entry> entries, const QString& query)
{
    if (query != m_query) {
        reset(std::move(entries), query);
        return;
    }
    updateRows(
        m_entries, entries, [](const Entry& entry) { return rowKey(entry.group, entry.item); },
        [](const Entry& shown, const Entry& next) {
            return shown.item == next.item && shown.conflict == next.conflict &&
                   shown.stale == next.stale && shown.was == next.was;
        });
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
    switch (role) {
    case ConflictRole:
        return entry.conflict;
    case StaleRole:
        return entry.stale;
    case WasTextRole:
        return entry.was.isEmpty()
                   ? QString()
                   : QStringLiteral("was %1").arg(ChordText::display(entry.was, m_keyNames));
    default:
        break;
    }
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
        emit model.dataChanged(model.index(0), model.index(rows - 1), {ChordTextRole, WasTextRole});
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
    QHash<int, QByteArray> names = shortcutRoleNames();
    names.insert(ConflictRole, "conflict");
    names.insert(StaleRole, "stale");
    names.insert(WasTextRole, "wasText");
    return names;
}

QHash<int, QByteArray> ShortcutListModel::shortcutRoleNames()
{
    return {{GroupRole, "group"},     {NameRole, "name"},          {NameHtmlRole, "nameHtml"},
            {ChordRole, "chord"},     {DetailRole, "detail"},      {FavoriteRole, "favorite"},
            {ScannedRole, "scanned"}, {ChordTextRole, "chordText"}};
}

} // namespace Tessaline
