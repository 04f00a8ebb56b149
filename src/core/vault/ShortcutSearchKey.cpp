// SPDX-License-Identifier: MIT
#include "vault/ShortcutSearchKey.h"

#include <cstring>

namespace Tessaline {

namespace {

// Appends the kept bytes of `text` and its end marker: whole when every character was kept as
// it is (plain ASCII without carriage returns, which pair with a line feed into one character).
void appendKept(QByteArray& out, const QString& text)
{
    bool whole = true;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit < 0x80) {
            out += (unit >= 'A' && unit <= 'Z') ? char(unit + ('a' - 'A')) : char(unit);
            whole = whole && unit != '\r';
            continue;
        }
        whole = false;
        // Characters that lower-case to ASCII (KELVIN SIGN, ...) or are canonically equal to
        // an ASCII one (GREEK QUESTION MARK, GREEK VARIA) can stand for a query character.
        const char16_t lower = c.toLower().unicode();
        if (lower < 0x80)
            out += char(lower);
        else if (unit == 0x037E)
            out += ';';
        else if (unit == 0x1FEF)
            out += '`';
    }
    out += whole ? ShortcutSearchKey::kWholeTextEnd : ShortcutSearchKey::kPartTextEnd;
}

} // namespace

ShortcutSearchKey::ShortcutSearchKey(const ShortcutItem& item)
{
    m_kept.reserve(item.name.size() + item.chord.size() + 40);
    appendKept(m_kept, item.name);
    appendKept(m_kept, item.chord);
    appendKept(m_kept, item.detailText());
    if (item.tags) {
        for (const QString& tag : *item.tags)
            appendKept(m_kept, tag);
    }
    m_mask = maskOf(m_kept);
}

quint64 ShortcutSearchKey::maskOf(QByteArrayView bytes)
{
    // Letters and digits get a bit each; other bytes share the remaining 28.
    quint64 mask = 0;
    for (const char c : bytes) {
        if (c == kWholeTextEnd || c == kPartTextEnd)
            continue;
        const auto byte = static_cast<unsigned char>(c);
        const int bit = (byte >= 'a' && byte <= 'z')   ? byte - 'a'
                        : (byte >= '0' && byte <= '9') ? 26 + (byte - '0')
                                                       : 36 + byte % 28;
        mask |= quint64(1) << bit;
    }
    return mask;
}

QByteArray ShortcutSearchKey::asciiQuery(const QString& trimmedQuery)
{
    const QString lower = trimmedQuery.toLower();
    QByteArray query;
    query.reserve(lower.size());
    for (const QChar c : lower) {
        if (c.unicode() >= 0x80)
            return {};
        query += char(c.unicode());
    }
    return query;
}

bool ShortcutSearchKey::mayMatch(const QByteArray& asciiQuery, quint64 queryMask) const
{
    if (asciiQuery.isEmpty())
        return true;
    if (queryMask & ~m_mask)
        return false;
    return judge(m_kept, asciiQuery, false) != Verdict::NoMatch;
}

ShortcutSearchKey::Verdict ShortcutSearchKey::judge(QByteArrayView kept, QByteArrayView asciiQuery,
                                                    bool exactQuery)
{
    const qsizetype length = asciiQuery.size();
    if (length == 0)
        return Verdict::MayMatch;
    const auto isEnd = [](char c) { return c == kWholeTextEnd || c == kPartTextEnd; };
    const char* const query = asciiQuery.data();
    const char* p = kept.data();
    const char* const end = p + kept.size();
    Verdict verdict = Verdict::NoMatch;
    // Greedy and leftmost: a text can hold the query only from its first occurrence of the
    // query's first character, so whether it holds it is settled by one pass from there.
    while ((p = static_cast<const char*>(std::memchr(p, query[0], end - p)))) {
        qsizetype matched = 1;
        for (++p; matched < length && p < end && !isEnd(*p); ++p) {
            if (*p == query[matched])
                ++matched;
        }
        while (p < end && !isEnd(*p))
            ++p;
        if (matched == length) {
            if (!exactQuery)
                return Verdict::MayMatch; // no later text can say more
            if (p < end && *p == kWholeTextEnd)
                return Verdict::Matches;
            verdict = Verdict::MayMatch;
        }
    }
    return verdict;
}

} // namespace Tessaline
