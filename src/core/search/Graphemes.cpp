// SPDX-License-Identifier: MIT
#include "search/Graphemes.h"

#include <QChar>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

namespace Tessaline::Graphemes {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
};

// Code points with the Lowercase property beyond the Ll category (Other_Lowercase, Unicode 14).
constexpr std::array kOtherLowercase{
    Range{0x00AA, 0x00AA},   Range{0x00BA, 0x00BA},   Range{0x02B0, 0x02B8},
    Range{0x02C0, 0x02C1},   Range{0x02E0, 0x02E4},   Range{0x0345, 0x0345},
    Range{0x037A, 0x037A},   Range{0x1D2C, 0x1D6A},   Range{0x1D78, 0x1D78},
    Range{0x1D9B, 0x1DBF},   Range{0x2071, 0x2071},   Range{0x207F, 0x207F},
    Range{0x2090, 0x209C},   Range{0x2170, 0x217F},   Range{0x24D0, 0x24E9},
    Range{0x2C7C, 0x2C7D},   Range{0xA69C, 0xA69D},   Range{0xA770, 0xA770},
    Range{0xA7F8, 0xA7F9},   Range{0xAB5C, 0xAB5F},   Range{0x10780, 0x10780},
    Range{0x10783, 0x10785}, Range{0x10787, 0x107B0}, Range{0x107B2, 0x107BA},
};

// Code points with the Uppercase property beyond the Lu category (Other_Uppercase, Unicode 14).
constexpr std::array kOtherUppercase{
    Range{0x2160, 0x216F},   Range{0x24B6, 0x24CF},   Range{0x1F130, 0x1F149},
    Range{0x1F150, 0x1F169}, Range{0x1F170, 0x1F189},
};

template <std::size_t N>
bool inRanges(const std::array<Range, N>& ranges, char32_t scalar)
{
    auto it =
        std::lower_bound(ranges.begin(), ranges.end(), scalar,
                         [](const Range& range, char32_t value) { return range.last < value; });
    return it != ranges.end() && it->first <= scalar;
}

// The one scalar of a single-scalar character, or 0 when it has more (or none).
char32_t singleScalar(QStringView character)
{
    if (character.size() == 1 && !QChar::isSurrogate(character[0].unicode()))
        return character[0].unicode();
    if (character.size() == 2 && QChar::isHighSurrogate(character[0].unicode()) &&
        QChar::isLowSurrogate(character[1].unicode()))
        return QChar::surrogateToUcs4(character[0], character[1]);
    return 0;
}

} // namespace

QStringList split(const QString& text)
{
    QStringList characters;
    if (text.isEmpty())
        return characters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end != -1; end = finder.toNextBoundary()) {
        characters.append(text.mid(start, end - start));
        start = end;
    }
    return characters;
}

QString comparisonForm(QStringView character)
{
    return character.toString().normalized(QString::NormalizationForm_C);
}

bool sameCharacter(QStringView a, QStringView b)
{
    return a == b || comparisonForm(a) == comparisonForm(b);
}

bool isLowercaseScalar(char32_t scalar)
{
    return QChar::category(scalar) == QChar::Letter_Lowercase || inRanges(kOtherLowercase, scalar);
}

bool isUppercaseScalar(char32_t scalar)
{
    return QChar::category(scalar) == QChar::Letter_Uppercase || inRanges(kOtherUppercase, scalar);
}

bool isLowercase(QStringView character)
{
    if (character.isEmpty())
        return false;
    if (const char32_t scalar = singleScalar(character))
        return isLowercaseScalar(scalar);
    const QString text = character.toString();
    return sameCharacter(text.toLower(), text) && !sameCharacter(text.toUpper(), text);
}

bool isUppercase(QStringView character)
{
    if (character.isEmpty())
        return false;
    if (const char32_t scalar = singleScalar(character))
        return isUppercaseScalar(scalar);
    const QString text = character.toString();
    return sameCharacter(text.toUpper(), text) && !sameCharacter(text.toLower(), text);
}

bool isSeparator(QStringView character)
{
    return character.size() == 1 && isSeparator(char32_t(character[0].unicode()));
}

bool isSimpleUnit(char16_t unit)
{
    // Units in the ranges below that composition replaces by another character.
    constexpr std::array<char16_t, 9> kSingletons{
        0x0374, 0x037E, 0x0387, // Greek numeral sign, question mark, ano teleia
        0x2126, 0x212A, 0x212B, // ohm, kelvin and angstrom signs
        0x2329, 0x232A, 0x2ADC, // angle brackets, forking
    };
    if (std::find(kSingletons.begin(), kSingletons.end(), unit) != kSingletons.end())
        return false;
    if (unit < 0x0300) // Latin-1, Latin Extended, IPA, spacing modifiers; CR joins a LF
        return unit != u'\r';
    if (unit >= 0x0370 && unit <= 0x052F) // Greek and Cyrillic, without Cyrillic combining marks
        return !(unit >= 0x0483 && unit <= 0x0489);
    if (unit >= 0x2010 && unit <= 0x205F) // punctuation, past the spaces and joiners
        return true;
    if (unit >= 0x2070 && unit <= 0x20CF) // super- and subscripts, currency
        return true;
    if (unit >= 0x2100 && unit <= 0x2BFF) // letterlike, arrows, maths, technical, shapes
        return true;
    return unit >= 0x4E00 && unit <= 0x9FFF; // CJK ideographs
}

} // namespace Tessaline::Graphemes
