// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ChordText.h"
#include "vault/VaultBrowserIndex.h"

#include <QAbstractListModel>
#include <QList>

namespace Tessaline {

/// The browser's flat list: the filtered groups of a VaultBrowserIndex, each row read in place
/// from the index, so that a keystroke changes which positions are shown and copies no shortcut.
/// Rows have the roles of ShortcutListModel, the group being the app's name.
class BrowserListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    /// Shows `groups` of `index`; `query` is the text whose matched characters are emphasised.
    /// The index must stay as it is until the next reset or clear.
    void reset(const VaultBrowserIndex& index, const QList<VaultBrowserIndex::RowGroup>& groups,
               const QString& query);
    /// Shows nothing and forgets the index.
    void clear();
    /// Redraws every row's chord text in `style`.
    void setKeyNameStyle(KeyNameStyle style);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    const VaultBrowserIndex* m_index = nullptr;
    QStringList m_groupNames;
    /// For each shown row: its position in the index's rows and its group in m_groupNames.
    QList<qsizetype> m_positions;
    QList<qsizetype> m_groupOfRow;
    QString m_query;
    KeyNameStyle m_keyNames = KeyNameStyle::Words;
};

} // namespace Tessaline
