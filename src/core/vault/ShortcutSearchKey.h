// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QByteArray>
#include <QString>

namespace Tessaline {

/// A quick pre-check before fuzzy matching: the lower-cased searchable text of a shortcut
/// (name, chord, detail text, tags and any extra texts) when all of it is plain ASCII. A query
/// whose lower-cased ASCII form is not a subsequence of it cannot match any of those texts,
/// because for ASCII text every character is one code unit and equal characters are equal
/// bytes. Anything non-ASCII is never rejected here: the matcher decides.
class ShortcutSearchKey
{
public:
    ShortcutSearchKey() = default;
    explicit ShortcutSearchKey(const ShortcutItem& item, const QStringList& extraTexts = {});

    /// The lower-cased query as bytes when it is ASCII, else empty: what mayMatch takes.
    static QByteArray asciiQuery(const QString& trimmedQuery);

    /// False only when no field can match `asciiQuery` (from asciiQuery(); empty means the
    /// query was not ASCII and nothing is ruled out).
    bool mayMatch(const QByteArray& asciiQuery) const;

private:
    QByteArray m_ascii;
    bool m_isAscii = false;
};

} // namespace Tessaline
