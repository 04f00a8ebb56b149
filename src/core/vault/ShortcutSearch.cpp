// SPDX-License-Identifier: MIT
#include "vault/ShortcutSearch.h"

#include "search/FuzzyMatch.h"
#include "search/FuzzyQuery.h"
#include "search/FuzzyText.h"
#include "vault/ChordText.h"

namespace Tessaline::ShortcutSearch {

namespace {

std::optional<qint64> better(std::optional<qint64> a, std::optional<qint64> b)
{
    if (!a)
        return b;
    if (!b)
        return a;
    return std::max(*a, *b);
}

} // namespace

std::optional<qint64> score(const QString& query, const ShortcutItem& item)
{
    const std::optional<qint64> fields = FuzzyMatch::score(query, item);
    const std::optional<QString> chord = ChordText::symbolQuery(query.trimmed());
    if (!chord)
        return fields;
    const std::optional<FuzzyMatch::Match> match = FuzzyMatch::match(*chord, item.chord);
    return better(fields, match ? std::optional<qint64>(match->score) : std::nullopt);
}

std::optional<FuzzyQuery> chordQuery(const QString& trimmedQuery)
{
    const std::optional<QString> chord = ChordText::symbolQuery(trimmedQuery);
    if (!chord)
        return std::nullopt;
    return FuzzyQuery(*chord);
}

std::optional<qint64> withChord(std::optional<qint64> score,
                                const std::optional<FuzzyQuery>& chordQuery, const FuzzyText& chord)
{
    if (!chordQuery)
        return score;
    return better(score, FuzzyMatch::matchScore(*chordQuery, chord));
}

} // namespace Tessaline::ShortcutSearch
