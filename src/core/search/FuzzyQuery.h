// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace Tessaline {

/// A query prepared once for matching against many candidates: the comparison keys of the
/// characters of its lower-cased form. Built from the query as given (never trimmed); use
/// searchTerm() for what a search field holds.
class FuzzyQuery
{
public:
    FuzzyQuery() = default;
    explicit FuzzyQuery(const QString& query);
    /// The query of a search field: trimmed of white space and newlines first.
    static FuzzyQuery searchTerm(const QString& typed);

    qsizetype size() const { return m_keys.size(); }
    bool isEmpty() const { return m_keys.isEmpty(); }
    /// True when every character is a single ASCII scalar; asciiKeys() then holds them.
    bool isAscii() const { return m_isAscii; }
    const QByteArray& asciiKeys() const { return m_ascii; }

    char32_t keyAt(qsizetype index) const { return m_keys.at(index); }
    QString wideKeyAt(qsizetype index) const
    {
        return m_wide.isEmpty() ? QString() : m_wide.at(index);
    }

private:
    QList<char32_t> m_keys;
    QStringList m_wide;
    QByteArray m_ascii;
    bool m_isAscii = true;
};

} // namespace Tessaline
