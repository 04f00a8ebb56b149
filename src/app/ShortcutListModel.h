// SPDX-License-Identifier: MIT
#pragma once

#include "KeyedListModel.h"
#include "vault/ChordText.h"
#include "vault/ShortcutItem.h"

#include <QList>

namespace Tessaline {

/// A flat list of shortcuts, each under a group title (a cheat-sheet section or a browser app),
/// in display order, for the QML lists. The name is also offered highlighted for the query, and
/// the chord as the user wants it drawn ("chordText") beside the stored one ("chord", which is
/// what gets copied), why the chord clashes ("conflict", empty when it does not), whether the
/// last menu scan of the app no longer found the item ("stale") and, for a command whose chord
/// changed, its old chord as the user wants it drawn ("wasText": "was Ctrl+X").
class ShortcutListModel : public KeyedListModel
{
    Q_OBJECT
public:
    enum Role
    {
        GroupRole = Qt::UserRole + 1,
        NameRole,
        NameHtmlRole,
        ChordRole,
        DetailRole,
        FavoriteRole,
        ScannedRole,
        ChordTextRole,
        ConflictRole,
        StaleRole,
        WasTextRole,
    };

    struct Entry
    {
        QString group;
        ShortcutItem item;
        /// Why the chord may not do what the row says (one reason per line); empty when it does.
        QString conflict = {};
        /// The last menu scan of the app no longer found the item.
        bool stale = false;
        /// The chord the command had before its last scan, stored form; empty when unchanged.
        QString was = {};
    };

    using KeyedListModel::KeyedListModel;

    /// Replaces every row; `query` is the text whose matched characters are emphasised.
    void reset(QList<Entry> entries, const QString& query);
    /// Brings the rows to `entries` through row-level changes (removals, moves, insertions,
    /// changed data) so that a list view keeps its scroll position and selection; a new
    /// `query` changes every row's highlight and so resets instead.
    void update(QList<Entry> entries, const QString& query);
    const QList<Entry>& entries() const { return m_entries; }
    /// Redraws every row's chord text in `style`.
    void setKeyNameStyle(KeyNameStyle style);

    /// Announces that the "chordText" and "wasText" of every one of `model`'s rows changed.
    static void chordTextsChanged(QAbstractListModel& model);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// What a row of `item` under the title `group` shows for `role`, with the characters that
    /// `query` matches emphasised in the highlighted name and the chord text drawn in
    /// `keyNames`. Shared with the browser's list.
    static QVariant shortcutData(const QString& group, const ShortcutItem& item,
                                 const QString& query, KeyNameStyle keyNames, int role);
    static QHash<int, QByteArray> shortcutRoleNames();
    /// What identifies a row of `item` under `group` across updates.
    static QString rowKey(const QString& group, const ShortcutItem& item);

private:
    QList<Entry> m_entries;
    QString m_query;
    KeyNameStyle m_keyNames = KeyNameStyle::Words;
};

} // namespace Tessaline
