// SPDX-License-Identifier: MIT
#include "vault/ShortcutSearchKey.h"

namespace Tessaline {

namespace {

bool appendAsciiLower(QByteArray& out, const QString& text)
{
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit >= 0x80)
            return false;
        out += (unit >= 'A' && unit <= 'Z') ? char(unit + ('a' - 'A')) : char(unit);
    }
    out += '\0';
    return true;
}

} // namespace

ShortcutSearchKey::ShortcutSearchKey(const ShortcutItem& item, const QStringList& extraTexts)
{
    m_ascii.reserve(item.name.size() + item.chord.size() + 48);
    m_isAscii = appendAsciiLower(m_ascii, item.name) && appendAsciiLower(m_ascii, item.chord) &&
                appendAsciiLower(m_ascii, item.detailText());
    if (m_isAscii && item.tags) {
        for (const QString& tag : *item.tags) {
            if (!(m_isAscii = appendAsciiLower(m_ascii, tag)))
                break;
        }
    }
    for (const QString& text : extraTexts) {
        if (!m_isAscii)
            break;
        m_isAscii = appendAsciiLower(m_ascii, text);
    }
    if (!m_isAscii)
        m_ascii.clear();
}

QByteArray ShortcutSearchKey::asciiQuery(const QString& trimmedQuery)
{
    QByteArray query;
    query.reserve(trimmedQuery.size());
    if (!appendAsciiLower(query, trimmedQuery))
        return {};
    query.chop(1);
    return query;
}

bool ShortcutSearchKey::mayMatch(const QByteArray& asciiQuery) const
{
    if (!m_isAscii || asciiQuery.isEmpty())
        return true;
    const char* q = asciiQuery.constData();
    const char* const qEnd = q + asciiQuery.size();
    for (const char c : m_ascii) {
        if (c == *q && ++q == qEnd)
            return true;
    }
    return false;
}

} // namespace Tessaline
