// SPDX-License-Identifier: MIT
#pragma once

#include "KeyedListModel.h"
#include "vault/ChordText.h"
#include "vault/VaultBrowserIndex.h"

#include <QList>

namespace Tessaline {

/// The browser's flat list: the filtered groups of a VaultBrowserIndex, each row read in place
/// from the index, so that a keystroke changes which positions are shown and copies no shortcut.
/// Rows have the roles of ShortcutListModel, the group being the app's name.
class BrowserListModel : public KeyedListModel
{
    Q_OBJECT
public:
    using KeyedListModel::KeyedListModel;

    /// Shows `groups` of `index`; `query` is the text whose matched characters are emphasised.
    /// The index must stay as it is until the next reset, update or clear.
    void reset(const VaultBrowserIndex& index, const QList<VaultBrowserIndex::RowGroup>& groups,
               const QString& query);
    /// Shows `groups` of `index`, a rebuilt index, through row-level changes so that a list view
    /// keeps its scroll position and selection; a new `query` resets instead. The index shown
    /// until now must still be alive during the call.
    void update(const VaultBrowserIndex& index, const QList<VaultBrowserIndex::RowGroup>& groups,
                const QString& query);
    /// Shows nothing and forgets the index.
    void clear();
    /// Redraws every row's chord text in `style`.
    void setKeyNameStyle(KeyNameStyle style);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    /// A shown row: its position in the rows of the index it was read from, and its group.
    struct Row
    {
        const VaultBrowserIndex* index = nullptr;
        qsizetype position = 0;
        QString group;

        const VaultShortcutRow& shortcutRow() const { return index->allRows().at(position); }
    };

    static QList<Row> rowsOf(const VaultBrowserIndex& index,
                             const QList<VaultBrowserIndex::RowGroup>& groups);

    QList<Row> m_rows;
    QString m_query;
    KeyNameStyle m_keyNames = KeyNameStyle::Words;
};

} // namespace Tessaline
