// SPDX-License-Identifier: MIT
#pragma once

#include "search/FuzzyShortcut.h"
#include "vault/PreparedShortcut.h"
#include "vault/ShortcutItem.h"
#include "vault/ShortcutKeyTable.h"

#include <QList>

#include <optional>

namespace Tessaline {

/// A list of shortcuts prepared once for the searches typed against it: every item's quick
/// pre-check packed into one table, beside its texts in the matcher's prepared form. The
/// answers are those of PreparedShortcut for each item.
class PreparedShortcutList
{
public:
    PreparedShortcutList() = default;
    explicit PreparedShortcutList(const QList<ShortcutItem>& items);

    qsizetype size() const { return m_fuzzy.size(); }

    /// PreparedShortcut::score() of the item at `index`.
    std::optional<qint64> score(qsizetype index, const PreparedShortcut::Query& query) const;
    /// Whether score() has a value, mostly settled by the pre-check alone.
    bool matches(qsizetype index, const PreparedShortcut::Query& query) const;

private:
    ShortcutKeyTable m_keys;
    QList<FuzzyShortcut> m_fuzzy;
};

} // namespace Tessaline
