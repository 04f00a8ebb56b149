// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QString>

#include <optional>

namespace Tessaline {

class FuzzyQuery;
class FuzzyText;

/// Every search of shortcuts: the matcher's score of a query over an item's fields, and, when
/// the query names modifiers in words ("ctrl s", "Ctrl+Shift+S"), also the match of the same
/// chord in the stored symbol form against the item's chord, whichever scores higher. A query
/// without a modifier word scores exactly as FuzzyMatch::score.
namespace ShortcutSearch {

/// The best score of `query` (trimmed here) over `item`, as above; no value when nothing
/// matches.
std::optional<qint64> score(const QString& query, const ShortcutItem& item);

/// The prepared form of a query's chord in symbols, when the trimmed query names a modifier
/// in words.
std::optional<FuzzyQuery> chordQuery(const QString& trimmedQuery);

/// The better of `score` and the chord query's match against the prepared chord.
std::optional<qint64> withChord(std::optional<qint64> score,
                                const std::optional<FuzzyQuery>& chordQuery,
                                const FuzzyText& chord);

} // namespace ShortcutSearch

} // namespace Tessaline
