// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

namespace Tessaline::Graphemes {

/// The user-perceived characters (extended grapheme clusters) of `text`, in order.
QStringList split(const QString& text);

/// Whether two characters are the same character: equal up to canonical equivalence, so that
/// "é" typed as one code point equals "e" followed by a combining acute accent.
bool sameCharacter(QStringView a, QStringView b);

/// The comparison form of a character: its canonical composition (NFC).
QString comparisonForm(QStringView character);

/// The Unicode Lowercase property of one scalar (Ll plus Other_Lowercase).
bool isLowercaseScalar(char32_t scalar);
/// The Unicode Uppercase property of one scalar (Lu plus Other_Uppercase).
bool isUppercaseScalar(char32_t scalar);

/// A single-scalar character is lowercase when its scalar has the Lowercase property; a longer
/// one when lowercasing leaves it unchanged and uppercasing would change it.
bool isLowercase(QStringView character);
/// The mirror of isLowercase.
bool isUppercase(QStringView character);

/// One of the five characters after which a match counts as a word start: " ", "/", ">", "-",
/// "_".
constexpr bool isSeparator(char32_t scalar)
{
    return scalar == U' ' || scalar == U'/' || scalar == U'>' || scalar == U'-' || scalar == U'_';
}
bool isSeparator(QStringView character);

/// True for UTF-16 units that always form a character of their own, whatever stands around
/// them, and that canonical composition leaves unchanged: most of Latin, Greek and Cyrillic,
/// general punctuation, arrows, technical and other symbols (the chord symbols among them) and
/// CJK ideographs. Combining marks, joiners, selectors, Hangul, surrogates and carriage return
/// are not. Text made only of these needs no grapheme segmentation.
bool isSimpleUnit(char16_t unit);

} // namespace Tessaline::Graphemes
