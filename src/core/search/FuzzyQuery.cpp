// SPDX-License-Identifier: MIT
#include "search/FuzzyQuery.h"

#include "search/FuzzyText.h"
#include "search/Graphemes.h"

namespace Tessaline {

FuzzyQuery::FuzzyQuery(const QString& query)
{
    const QStringList characters = Graphemes::split(query.toLower());
    m_keys.reserve(characters.size());
    for (qsizetype i = 0; i < characters.size(); ++i) {
        QString wide;
        const char32_t key = FuzzyText::keyOf(characters.at(i), &wide);
        m_keys.append(key);
        if (!wide.isEmpty()) {
            m_wide.resize(characters.size());
            m_wide[i] = wide;
        }
        // "\r\n" is one character of two bytes: it never takes the byte-wise path.
        if (key < 0x80 && characters.at(i).size() == 1)
            m_ascii.append(char(key));
        else
            m_isAscii = false;
    }
    if (!m_isAscii)
        m_ascii.clear();
}

FuzzyQuery FuzzyQuery::searchTerm(const QString& typed)
{
    return FuzzyQuery(typed.trimmed());
}

} // namespace Tessaline
