// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace Tessaline {

/// A quick pre-check before fuzzy matching. It keeps, lower-cased, every character of the
/// shortcut's searchable texts (name, chord, detail text, tags) that is ASCII or lower-cases
/// or composes to ASCII, and drops the rest; each text's kept bytes end with a marker that
/// tells whether the text was kept whole. A query whose characters are all ASCII can only
/// match a text if each of its characters equals one of the text's characters, in order; such
/// a character is kept here, so a query that is not a subsequence of one text's kept bytes
/// matches none of the texts. When the text was kept whole (plain ASCII without carriage
/// returns) and the query's characters are single ASCII characters, being a subsequence is
/// also enough: the matcher would find it. Other queries are never ruled out.
class ShortcutSearchKey
{
public:
    /// What the kept bytes say about a query.
    enum class Verdict
    {
        NoMatch,  ///< no text can match
        MayMatch, ///< only the matcher can tell
        Matches,  ///< a text kept whole holds an exact query
    };

    /// End a text's kept bytes: the text was kept whole, or not. Never kept bytes (all ASCII).
    static constexpr char kWholeTextEnd = char(0xfe);
    static constexpr char kPartTextEnd = char(0xff);

    ShortcutSearchKey() = default;
    explicit ShortcutSearchKey(const ShortcutItem& item);

    /// The lower-cased trimmed query as bytes when all of it is ASCII, else empty: what
    /// mayMatch takes.
    static QByteArray asciiQuery(const QString& trimmedQuery);

    /// A bit for each letter and digit that occurs in `bytes`, and shared bits for the rest
    /// (the text ends have none).
    static quint64 maskOf(QByteArrayView bytes);
    /// maskOf() of the kept bytes.
    quint64 mask() const { return m_mask; }
    /// The kept bytes of every text, each text's followed by its end marker.
    QByteArrayView kept() const { return m_kept; }

    /// The verdict of `kept` bytes on `asciiQuery` (not empty). `exactQuery` tells that the
    /// query's bytes are exactly the matcher's keys of its characters; without it the best
    /// verdict is MayMatch.
    static Verdict judge(QByteArrayView kept, QByteArrayView asciiQuery, bool exactQuery);

    /// False only when none of the texts can match `asciiQuery` (from asciiQuery(), with
    /// `queryMask` its maskOf(); empty rules nothing out).
    bool mayMatch(const QByteArray& asciiQuery, quint64 queryMask) const;

private:
    QByteArray m_kept;
    /// maskOf(m_kept): a query with a byte the texts lack is turned away without reading them.
    quint64 m_mask = 0;
};

} // namespace Tessaline
