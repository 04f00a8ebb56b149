// SPDX-License-Identifier: MIT
#include "vault/PreparedShortcut.h"

#include "search/FuzzyMatch.h"
#include "vault/ShortcutSearch.h"

namespace Tessaline {

PreparedShortcut::Query PreparedShortcut::Query::fromTyped(const QString& typed)
{
    Query query;
    query.trimmed = typed.trimmed();
    query.fuzzy = FuzzyQuery::searchTerm(typed);
    query.ascii = ShortcutSearchKey::asciiQuery(query.trimmed);
    query.asciiMask = ShortcutSearchKey::maskOf(query.ascii);
    query.asciiIsExact =
        !query.ascii.isEmpty() && query.fuzzy.isAscii() && query.fuzzy.asciiKeys() == query.ascii;
    query.chord = ShortcutSearch::chordQuery(query.trimmed);
    return query;
}

PreparedShortcut::PreparedShortcut(const ShortcutItem& item) : m_key(item), m_fuzzy(item) {}

std::optional<qint64> PreparedShortcut::score(const Query& query) const
{
    if (query.isEmpty())
        return 0;
    const std::optional<qint64> fields = m_key.mayMatch(query.ascii, query.asciiMask)
                                             ? FuzzyMatch::score(query.fuzzy, m_fuzzy)
                                             : std::nullopt;
    return ShortcutSearch::withChord(fields, query.chord, m_fuzzy.chord);
}

} // namespace Tessaline
