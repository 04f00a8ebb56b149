// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QSet>
#include <QString>

namespace Tessaline {

/// A list model whose rows have an identity that survives a change of the data behind them.
/// updateRows() brings the rows to a new list through row-level changes (removals, moves,
/// insertions, changed data), so that a list view keeps its scroll position and selection.
class KeyedListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

protected:
    /// Turns `rows` into `target`, telling views of each step. `keyOf(entry)` gives a row's
    /// identity as a QString; `sameData(a, b)` says whether two entries of one identity show the
    /// same. Every row ends up holding its entry of `target`, shown the same or not.
    template <typename Entry, typename KeyOf, typename SameData>
    void updateRows(QList<Entry>& rows, const QList<Entry>& target, KeyOf keyOf, SameData sameData);
};

template <typename Entry, typename KeyOf, typename SameData>
void KeyedListModel::updateRows(QList<Entry>& rows, const QList<Entry>& target, KeyOf keyOf,
                                SameData sameData)
{
    QSet<QString> wanted;
    wanted.reserve(target.size());
    for (const Entry& entry : target)
        wanted.insert(keyOf(entry));

    // Rows that are gone, removed in runs from the end so that indices stay valid.
    for (qsizetype last = rows.size() - 1; last >= 0;) {
        if (wanted.contains(keyOf(rows.at(last)))) {
            --last;
            continue;
        }
        qsizetype first = last;
        while (first > 0 && !wanted.contains(keyOf(rows.at(first - 1))))
            --first;
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last));
        rows.remove(first, last - first + 1);
        endRemoveRows();
        last = first - 1;
    }

    // Row by row: keep, move up from further down, or insert.
    for (qsizetype row = 0; row < target.size(); ++row) {
        const Entry& wantedEntry = target.at(row);
        const QString key = keyOf(wantedEntry);
        qsizetype found = -1;
        for (qsizetype at = row; at < rows.size(); ++at) {
            if (keyOf(rows.at(at)) == key) {
                found = at;
                break;
            }
        }
        if (found < 0) {
            beginInsertRows({}, static_cast<int>(row), static_cast<int>(row));
            rows.insert(row, wantedEntry);
            endInsertRows();
            continue;
        }
        if (found != row) {
            beginMoveRows({}, static_cast<int>(found), static_cast<int>(found), {},
                          static_cast<int>(row));
            rows.move(found, row);
            endMoveRows();
        }
        const bool changed = !sameData(rows.at(row), wantedEntry);
        rows[row] = wantedEntry;
        if (changed) {
            const QModelIndex at = index(static_cast<int>(row));
            emit dataChanged(at, at);
        }
    }

    // Rows left over (an identity listed twice before and once now).
    if (rows.size() > target.size()) {
        beginRemoveRows({}, static_cast<int>(target.size()), static_cast<int>(rows.size() - 1));
        rows.resize(target.size());
        endRemoveRows();
    }
}

} // namespace Tessaline
