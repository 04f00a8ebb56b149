// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

namespace Tessaline {

struct ShortcutItem;
class FuzzyQuery;
class FuzzyText;
struct FuzzyShortcut;

/// The matcher behind every search field: a subsequence match over user-perceived characters
/// with small bonuses for word starts, separators, camel-case humps and runs, and small
/// penalties for unmatched length and a late first match.
namespace FuzzyMatch {

/// The result of one match.
struct Match
{
    /// May be negative for long candidates with a late first match.
    qint64 score;
    /// Indices (in characters of the candidate) of the matched characters, strictly increasing,
    /// one per query character.
    QList<qint64> positions;

    friend bool operator==(const Match&, const Match&) = default;
};

/// The accent colour of matched characters in highlighted().
inline QString defaultAccentColor()
{
    return QStringLiteral("#0a84ff");
}

/// Matches `query` (lower-cased, never trimmed) greedily and leftmost against `candidate`.
/// No value when the query is not a subsequence of the candidate; an empty query matches
/// everything with score 0 and no positions.
std::optional<Match> match(const QString& query, const QString& candidate);

/// The best score of the trimmed `query` over the item's name (plus 12), chord, detail text and
/// tags; ties keep the earlier field. 0 for an empty query; no value when nothing matches.
std::optional<qint64> score(const QString& query, const ShortcutItem& item);

/// `text` as rich text (HTML, every character escaped) with the characters that the trimmed
/// `query` matches in bold and `accentColor`.
QString highlighted(const QString& text, const QString& query,
                    const QString& accentColor = defaultAccentColor());

// The same operations over prepared forms, for lists searched again at every keystroke. Their
// results are those of the plain operations above for the same strings.

/// match() of a prepared query against a prepared candidate.
std::optional<Match> match(const FuzzyQuery& query, const FuzzyText& candidate);
/// The score of match(), without positions.
std::optional<qint64> matchScore(const FuzzyQuery& query, const FuzzyText& candidate);
/// The score of match() against a UTF-8 candidate; ASCII lines are matched byte by byte.
std::optional<qint64> matchScore(const FuzzyQuery& query, QByteArrayView utf8Candidate);
/// score() with a query from FuzzyQuery::searchTerm() and a prepared shortcut.
std::optional<qint64> score(const FuzzyQuery& searchTerm, const FuzzyShortcut& item);
/// Whether score() has a value, found without scoring the fields after the first that matches.
bool matches(const FuzzyQuery& searchTerm, const FuzzyShortcut& item);

} // namespace FuzzyMatch
} // namespace Tessaline
