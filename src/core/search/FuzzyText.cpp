// SPDX-License-Identifier: MIT
#include "search/FuzzyText.h"

#include "search/Graphemes.h"

#include <QHash>

#include <array>
#include <memory>

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

const FuzzyText::UnitInfo& FuzzyText::unitInfo(char16_t unit)
{
    // 256 blocks of 256 units, each filled the first time one of its units is asked for.
    static std::array<std::unique_ptr<std::array<UnitInfo, 256>>, 256> blocks;
    auto& block = blocks[unit >> 8];
    if (!block) {
        block = std::make_unique<std::array<UnitInfo, 256>>();
        for (char16_t low = 0; low < 256; ++low) {
            const char16_t u = char16_t((unit & 0xFF00) | low);
            const char16_t lower = char16_t(QChar::toLower(char32_t(u)));
            // Full lower-casing maps one simple unit to one unit except for the dotted capital I.
            const bool simple =
                Graphemes::isSimpleUnit(u) && u != 0x0130 && Graphemes::isSimpleUnit(lower);
            (*block)[low] = UnitInfo{lower, scalarFlags(u), simple};
        }
    }
    return (*block)[unit & 0xFF];
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

    // Text of simple units: one unit per character, already in composed form.
    const qsizetype units = text.size();
    m_keys.resize(units);
    m_flags.resize(units);
    bool simple = true;
    for (qsizetype i = 0; i < units && simple; ++i) {
        const UnitInfo& info = unitInfo(text.at(i).unicode());
        simple = info.simple;
        m_keys[i] = info.key;
        m_flags[i] = info.flags;
    }
    if (simple) {
        m_size = m_lowerSize = units;
        return;
    }
    m_keys.clear();
    m_flags.clear();

    const QString lower = text.toLower();
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
