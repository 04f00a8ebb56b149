// SPDX-License-Identifier: MIT
#include "vault/PreparedShortcutList.h"

#include "search/FuzzyMatch.h"
#include "vault/ShortcutSearch.h"

namespace Tessaline {

PreparedShortcutList::PreparedShortcutList(const QList<ShortcutItem>& items)
{
    m_keys.reserve(items.size());
    m_fuzzy.reserve(items.size());
    for (const ShortcutItem& item : items) {
        m_keys.append(ShortcutSearchKey(item));
        m_fuzzy.append(FuzzyShortcut(item));
    }
}

std::optional<qint64> PreparedShortcutList::score(qsizetype index,
                                                  const PreparedShortcut::Query& query) const
{
    if (query.isEmpty())
        return 0;
    const std::optional<qint64> fields = m_keys.judge(index, query.ascii, query.asciiMask, false) ==
                                                 ShortcutSearchKey::Verdict::NoMatch
                                             ? std::nullopt
                                             : FuzzyMatch::score(query.fuzzy, m_fuzzy[index]);
    return ShortcutSearch::withChord(fields, query.chord, m_fuzzy[index].chord);
}

bool PreparedShortcutList::matches(qsizetype index, const PreparedShortcut::Query& query) const
{
    if (query.isEmpty())
        return true;
    if (query.chord && FuzzyMatch::matchScore(*query.chord, m_fuzzy[index].chord))
        return true;
    switch (m_keys.judge(index, query.ascii, query.asciiMask, query.asciiIsExact)) {
    case ShortcutSearchKey::Verdict::NoMatch:
        return false;
    case ShortcutSearchKey::Verdict::Matches:
        return true;
    case ShortcutSearchKey::Verdict::MayMatch:
        break;
    }
    // The matcher's prepared texts, spread over the heap, are read only here.
    return FuzzyMatch::matches(query.fuzzy, m_fuzzy[index]);
}

} // namespace Tessaline
