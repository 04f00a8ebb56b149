// SPDX-License-Identifier: MIT
#include "search/FuzzyText.h"

#include "search/Graphemes.h"

#include <QHash>

#include <array>

namespace Tessaline {

namespace {

bool isPlainAscii(const QString& text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x80 || c == u'\r')
            return false;
    }
    return true;
}

bool isSimple(const QString& text)
{
    for (const QChar c : text) {
        if (!Graphemes::isSimpleUnit(c.unicode()))
            return false;
    }
    return true;
}

std::array<quint8, 128> makeAsciiFlags()
{
    std::array<quint8, 128> table{};
    for (char32_t byte = 0; byte < 128; ++byte)
        table[byte] = FuzzyText::scalarFlags(byte);
    return table;
}

} // namespace

quint8 FuzzyText::scalarFlags(char32_t scalar)
{
    quint8 flags = 0;
    if (Graphemes::isSeparator(scalar))
        flags |= Separator;
    if (Graphemes::isLowercaseScalar(scalar))
        flags |= Lowercase;
    if (Graphemes::isUppercaseScalar(scalar))
        flags |= Uppercase;
    return flags;
}

quint8 FuzzyText::asciiFlags(unsigned char byte)
{
    static const std::array<quint8, 128> table = makeAsciiFlags();
    return byte < 128 ? table[byte] : 0;
}

char32_t FuzzyText::keyOf(const QString& lowerCharacter, QString* wide)
{
    const QString composed = Graphemes::comparisonForm(lowerCharacter);
    const QList<uint> scalars = composed.toUcs4();
    if (scalars.size() == 1)
        return scalars.first();
    if (wide)
        *wide = composed;
    return kWideKey | char32_t(qHash(composed) & 0x7fffffffu);
}

FuzzyText::FuzzyText(const QString& text) : m_text(text)
{
    if (isPlainAscii(text)) {
        m_ascii = text.toLatin1();
        m_size = m_lowerSize = m_ascii.size();
        return;
    }
    m_isAscii = false;

    const QString lower = text.toLower();
    if (lower.size() == text.size() && isSimple(text) && isSimple(lower)) {
        // One unit per character, already in composed form.
        m_size = m_lowerSize = text.size();
        m_keys.resize(m_size);
        m_flags.resize(m_size);
        for (qsizetype i = 0; i < m_size; ++i) {
            m_keys[i] = lower.at(i).unicode();
            m_flags[i] = scalarFlags(text.at(i).unicode());
        }
        return;
    }

    const QStringList original = Graphemes::split(text);
    const QStringList lowered = Graphemes::split(lower);
    m_size = original.size();
    m_lowerSize = lowered.size();
    m_flags.reserve(m_size);
    for (const QString& character : original) {
        quint8 flags = 0;
        if (Graphemes::isSeparator(character))
            flags |= Separator;
        if (Graphemes::isLowercase(character))
            flags |= Lowercase;
        if (Graphemes::isUppercase(character))
            flags |= Uppercase;
        m_flags.append(flags);
    }
    m_keys.reserve(m_lowerSize);
    for (qsizetype i = 0; i < m_lowerSize; ++i) {
        QString wide;
        m_keys.append(keyOf(lowered.at(i), &wide));
        if (!wide.isEmpty()) {
            m_wide.resize(m_lowerSize);
            m_wide[i] = wide;
        }
    }
}

char32_t FuzzyText::keyAt(qsizetype index) const
{
    return m_isAscii ? asciiKey(static_cast<unsigned char>(m_ascii.at(index))) : m_keys.at(index);
}

QString FuzzyText::wideKeyAt(qsizetype index) const
{
    return m_wide.isEmpty() ? QString() : m_wide.at(index);
}

quint8 FuzzyText::flagsAt(qsizetype index) const
{
    if (index < 0 || index >= m_size)
        qFatal("FuzzyMatch: character %lld is outside the candidate's %lld characters",
               static_cast<long long>(index), static_cast<long long>(m_size));
    return m_isAscii ? asciiFlags(static_cast<unsigned char>(m_ascii.at(index)))
                     : m_flags.at(index);
}

} // namespace Tessaline
