// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QByteArray>
#include <QString>

namespace Tessaline {

/// A quick pre-check before fuzzy matching. It keeps, lower-cased, every character of the
/// shortcut's searchable texts (name, chord, detail text, tags) that is ASCII or lower-cases
/// or composes to ASCII, and drops the rest. A query whose characters are all ASCII can only
/// match a text if each of its characters equals one of the text's characters, in order; such
/// a character is kept here, so a query that is not a subsequence of the kept bytes matches
/// none of the texts. Queries with other characters are never ruled out: the matcher decides.
class ShortcutSearchKey
{
public:
    ShortcutSearchKey() = default;
    explicit ShortcutSearchKey(const ShortcutItem& item);

    /// The lower-cased trimmed query as bytes when all of it is ASCII, else empty: what
    /// mayMatch takes.
    static QByteArray asciiQuery(const QString& trimmedQuery);

    /// A bit for each letter and digit that occurs in `bytes`, and shared bits for the rest.
    static quint64 maskOf(QByteArrayView bytes);
    /// maskOf() of the kept bytes.
    quint64 mask() const { return m_mask; }

    /// False only when none of the texts can match `asciiQuery` (from asciiQuery(), with
    /// `queryMask` its maskOf(); empty rules nothing out).
    bool mayMatch(const QByteArray& asciiQuery, quint64 queryMask) const;

private:
    QByteArray m_kept;
    /// maskOf(m_kept): a query with a byte the texts lack is turned away without reading them.
    quint64 m_mask = 0;
};

} // namespace Tessaline
