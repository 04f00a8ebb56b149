// SPDX-License-Identifier: MIT
#include "vault/PreparedShortcut.h"

#include "search/FuzzyMatch.h"

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
    return query;
}

PreparedShortcut::PreparedShortcut(const ShortcutItem& item) : m_key(item), m_fuzzy(item) {}

std::optional<qint64> PreparedShortcut::score(const Query& query) const
{
    if (query.isEmpty())
        return 0;
    if (!m_key.mayMatch(query.ascii, query.asciiMask))
        return std::nullopt;
    return FuzzyMatch::score(query.fuzzy, m_fuzzy);
}

} // namespace Tessaline
