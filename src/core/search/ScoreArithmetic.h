// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace Tessaline::FuzzyMatch {

inline constexpr qint64 kMatchPoint = 1;
inline constexpr qint64 kConsecutiveBonus = 5;
inline constexpr qint64 kStartBonus = 8;
inline constexpr qint64 kWordBoundaryBonus = 7;
inline constexpr qint64 kCamelCaseBonus = 4;
inline constexpr qint64 kNameBonus = 12;

/// Score arithmetic that stops the process on overflow instead of wrapping.
namespace ScoreArithmetic {

inline qint64 add(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        qFatal("FuzzyMatch: score overflow in %lld + %lld", static_cast<long long>(a),
               static_cast<long long>(b));
    return sum;
}

inline qint64 subtract(qint64 a, qint64 b)
{
    qint64 difference = 0;
    if (__builtin_sub_overflow(a, b, &difference))
        qFatal("FuzzyMatch: score overflow in %lld - %lld", static_cast<long long>(a),
               static_cast<long long>(b));
    return difference;
}

/// One point per four unmatched characters of the candidate (division truncates toward zero).
inline qint64 unmatchedPenalty(qint64 candidateCount, qint64 matchedCount)
{
    return subtract(candidateCount, matchedCount) / 4;
}

/// Half a point per character before the first match.
inline qint64 latePenalty(qint64 firstPosition)
{
    return firstPosition / 2;
}

} // namespace ScoreArithmetic
} // namespace Tessaline::FuzzyMatch
