// SPDX-License-Identifier: MIT
#pragma once

#include "search/FuzzyQuery.h"
#include "search/FuzzyShortcut.h"
#include "vault/ShortcutItem.h"
#include "vault/ShortcutSearchKey.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Tessaline {

/// A shortcut prepared once for the searches typed against it: its texts in the matcher's
/// prepared form and a quick pre-check that turns most non-matching items away early.
/// score() gives exactly FuzzyMatch::score of the plain item.
class PreparedShortcut
{
public:
    /// A search term prepared once per keystroke.
    struct Query
    {
        QString trimmed;
        FuzzyQuery fuzzy;
        QByteArray ascii;
        quint64 asciiMask = 0;
        /// True when `ascii` holds exactly the matcher's keys of the query (every character a
        /// single ASCII character): a text kept whole by the pre-check can then decide alone.
        bool asciiIsExact = false;
        /// The chord the query names in words ("ctrl s"), in the stored symbol form.
        std::optional<FuzzyQuery> chord;

        static Query fromTyped(const QString& typed);
        bool isEmpty() const { return trimmed.isEmpty(); }
    };

    PreparedShortcut() = default;
    explicit PreparedShortcut(const ShortcutItem& item);

    /// The best score of the query over the item's fields, as FuzzyMatch::score.
    std::optional<qint64> score(const Query& query) const;

    /// The presence mask of the item's text: a list may keep these side by side and skip
    /// score() for items where `(query.asciiMask & ~mask) != 0`, which cannot match.
    quint64 mask() const { return m_key.mask(); }

private:
    ShortcutSearchKey m_key;
    FuzzyShortcut m_fuzzy;
};

} // namespace Tessaline
