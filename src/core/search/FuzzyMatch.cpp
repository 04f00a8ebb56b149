// SPDX-License-Identifier: MIT
#include "search/FuzzyMatch.h"

#include "search/FuzzyQuery.h"
#include "search/FuzzyShortcut.h"
#include "search/FuzzyText.h"
#include "search/Graphemes.h"
#include "search/ScoreArithmetic.h"
#include "vault/ShortcutItem.h"

#include <QSet>

#include <algorithm>
#include <array>

namespace Tessaline::FuzzyMatch {

std::optional<Match> match(const QString& query, const QString& candidate)
{
    const QStringList q = Graphemes::split(query.toLower());
    if (q.isEmpty())
        return Match{0, {}};
    // Case tests look at the candidate as written, equality at its lower-cased form.
    const QStringList orig = Graphemes::split(candidate);
    const QStringList low = Graphemes::split(candidate.toLower());
    if (orig.size() < q.size())
        return std::nullopt;
    if (low.isEmpty())
        return std::nullopt;

    const auto original = [&orig](qsizetype index) -> const QString& {
        if (index < 0 || index >= orig.size())
            qFatal("FuzzyMatch: character %lld is outside the candidate's %lld characters",
                   static_cast<long long>(index), static_cast<long long>(orig.size()));
        return orig.at(index);
    };

    qsizetype qi = 0;
    qint64 last = -2; // so that index 0 never counts as consecutive
    qint64 score = 0;
    QList<qint64> positions;
    positions.reserve(q.size());
    for (qsizetype i = 0; i < low.size() && qi < q.size(); ++i) {
        if (!Graphemes::sameCharacter(low.at(i), q.at(qi)))
            continue;
        positions.append(i);
        score = ScoreArithmetic::add(score, kMatchPoint);
        if (i - 1 == last)
            score = ScoreArithmetic::add(score, kConsecutiveBonus);
        if (i == 0) {
            score = ScoreArithmetic::add(score, kStartBonus);
        } else {
            const QString& prev = original(i - 1);
            if (Graphemes::isSeparator(prev))
                score = ScoreArithmetic::add(score, kWordBoundaryBonus);
            else if (Graphemes::isLowercase(prev) && Graphemes::isUppercase(original(i)))
                score = ScoreArithmetic::add(score, kCamelCaseBonus);
        }
        ++qi;
        last = i;
    }
    if (qi != q.size())
        return std::nullopt;

    score = ScoreArithmetic::subtract(
        score, ScoreArithmetic::unmatchedPenalty(orig.size(), positions.size()));
    if (!positions.isEmpty())
        score = ScoreArithmetic::subtract(score, ScoreArithmetic::latePenalty(positions.first()));
    return Match{score, std::move(positions)};
}

std::optional<qint64> score(const QString& query, const ShortcutItem& item)
{
    const QString t = query.trimmed();
    if (t.isEmpty())
        return 0;

    std::optional<qint64> best;
    if (const auto name = match(t, item.name))
        best = ScoreArithmetic::add(name->score, kNameBonus);

    const auto consider = [&](const QString& field) {
        const auto m = match(t, field);
        if (m && (!best || m->score > *best))
            best = m->score;
    };
    consider(item.chord);
    consider(item.detailText());
    if (item.tags) {
        for (const QString& tag : *item.tags)
            consider(tag);
    }
    return best;
}

QString highlighted(const QString& text, const QString& query, const QString& accentColor)
{
    const QString t = query.trimmed();
    if (t.isEmpty())
        return text.toHtmlEscaped();
    const auto m = match(t, text);
    if (!m || m->positions.isEmpty())
        return text.toHtmlEscaped();

    const QSet<qint64> matched(m->positions.cbegin(), m->positions.cend());
    const QString open = QStringLiteral("<font color=\"%1\"><b>").arg(accentColor.toHtmlEscaped());
    const QString close = QStringLiteral("</b></font>");
    const QStringList characters = Graphemes::split(text);
    QString html;
    html.reserve(text.size() + m->positions.size() * (open.size() + close.size()));
    bool inRun = false;
    for (qsizetype i = 0; i < characters.size(); ++i) {
        const bool emphasised = matched.contains(i);
        if (emphasised != inRun) {
            html += emphasised ? open : close;
            inRun = emphasised;
        }
        html += characters.at(i).toHtmlEscaped();
    }
    if (inRun)
        html += close;
    return html;
}

namespace {

// ASCII text without carriage returns: one byte per character.
struct AsciiCandidate
{
    const unsigned char* bytes;
    qsizetype count;

    qsizetype size() const { return count; }
    qsizetype lowerSize() const { return count; }
    bool equals(qsizetype i, const FuzzyQuery& query, qsizetype qi) const
    {
        return FuzzyText::asciiKey(bytes[i]) == query.keyAt(qi);
    }
    quint8 flags(qsizetype i) const { return FuzzyText::asciiFlags(bytes[i]); }
};

struct PreparedCandidate
{
    const FuzzyText& text;

    qsizetype size() const { return text.size(); }
    qsizetype lowerSize() const { return text.lowerSize(); }
    bool equals(qsizetype i, const FuzzyQuery& query, qsizetype qi) const
    {
        const char32_t key = text.keyAt(i);
        return key == query.keyAt(qi) &&
               (key < FuzzyText::kWideKey || text.wideKeyAt(i) == query.wideKeyAt(qi));
    }
    quint8 flags(qsizetype i) const { return text.flagsAt(i); }
};

// The matching walk of match(), over any candidate form.
template <bool WithPositions, typename Candidate>
std::optional<Match> walk(const FuzzyQuery& query, const Candidate& candidate)
{
    const qsizetype count = query.size();
    if (count == 0)
        return Match{0, {}};
    if (candidate.size() < count)
        return std::nullopt;
    const qsizetype lowerSize = candidate.lowerSize();
    if (lowerSize == 0)
        return std::nullopt;

    qsizetype qi = 0;
    qint64 last = -2;
    qint64 first = -1;
    qint64 score = 0;
    QList<qint64> positions;
    if constexpr (WithPositions)
        positions.reserve(count);
    for (qsizetype i = 0; i < lowerSize; ++i) {
        if (!candidate.equals(i, query, qi))
            continue;
        if (first < 0)
            first = i;
        if constexpr (WithPositions)
            positions.append(i);
        score = ScoreArithmetic::add(score, kMatchPoint);
        if (i - 1 == last)
            score = ScoreArithmetic::add(score, kConsecutiveBonus);
        if (i == 0) {
            score = ScoreArithmetic::add(score, kStartBonus);
        } else {
            const quint8 prev = candidate.flags(i - 1);
            if (prev & FuzzyText::Separator)
                score = ScoreArithmetic::add(score, kWordBoundaryBonus);
            else if ((prev & FuzzyText::Lowercase) && (candidate.flags(i) & FuzzyText::Uppercase))
                score = ScoreArithmetic::add(score, kCamelCaseBonus);
        }
        last = i;
        if (++qi == count)
            break;
    }
    if (qi != count)
        return std::nullopt;
    score = ScoreArithmetic::subtract(score,
                                      ScoreArithmetic::unmatchedPenalty(candidate.size(), count));
    score = ScoreArithmetic::subtract(score, ScoreArithmetic::latePenalty(first));
    return Match{score, std::move(positions)};
}

// Whether walk() finds a match, without scoring it: the same steps up to the last query
// character.
template <typename Candidate>
bool holds(const FuzzyQuery& query, const Candidate& candidate)
{
    const qsizetype count = query.size();
    if (count == 0)
        return true;
    if (candidate.size() < count)
        return false;
    const qsizetype lowerSize = candidate.lowerSize();
    qsizetype qi = 0;
    for (qsizetype i = 0; i < lowerSize; ++i) {
        if (candidate.equals(i, query, qi) && ++qi == count)
            return true;
    }
    return false;
}

bool holdsPrepared(const FuzzyQuery& query, const FuzzyText& candidate)
{
    if (candidate.isAscii()) {
        const QByteArray& bytes = candidate.asciiBytes();
        return holds(query,
                     AsciiCandidate{reinterpret_cast<const unsigned char*>(bytes.constData()),
                                    bytes.size()});
    }
    return holds(query, PreparedCandidate{candidate});
}

// Flags of every ASCII character, for the byte-wise walk.
constexpr std::array<quint8, 128> kAsciiFlags = [] {
    std::array<quint8, 128> table{};
    for (unsigned char byte = 0; byte < 128; ++byte)
        table[byte] = FuzzyText::asciiFlags(byte);
    return table;
}();

// Points for a query character matched at `index`, given the index of the previous match and
// the flags of the characters at index - 1 and at index.
inline qint64 matchPoints(qint64 index, qint64 last, quint8 previous, quint8 current)
{
    qint64 points = kMatchPoint;
    if (index - 1 == last)
        points += kConsecutiveBonus;
    if (index == 0)
        points += kStartBonus;
    else if (previous & FuzzyText::Separator)
        points += kWordBoundaryBonus;
    else if ((previous & FuzzyText::Lowercase) && (current & FuzzyText::Uppercase))
        points += kCamelCaseBonus;
    return points;
}

// The walk of match() in one pass over UTF-8 text of simple units (one unit per character,
// unchanged by composition). No value in `handled` when the text holds anything else.
std::optional<qint64> walkUtf8(const FuzzyQuery& query, const unsigned char* bytes, qsizetype size,
                               bool& handled)
{
    handled = true;
    const qsizetype count = query.size();
    qsizetype qi = 0;
    char32_t wanted = query.keyAt(0);
    qint64 index = 0;
    qint64 last = -2;
    qint64 first = -1;
    qint64 score = 0;
    quint8 previous = 0;
    for (qsizetype b = 0; b < size; ++index) {
        char32_t key;
        quint8 flags;
        const unsigned char lead = bytes[b];
        if (lead < 0x80) {
            if (lead == '\r') { // CR LF is one character
                handled = false;
                return std::nullopt;
            }
            key = FuzzyText::asciiKey(lead);
            flags = kAsciiFlags[lead];
            ++b;
        } else {
            char32_t scalar;
            if ((lead & 0xE0) == 0xC0 && b + 1 < size && (bytes[b + 1] & 0xC0) == 0x80) {
                scalar = (char32_t(lead & 0x1F) << 6) | (bytes[b + 1] & 0x3F);
                b += 2;
            } else if ((lead & 0xF0) == 0xE0 && b + 2 < size && (bytes[b + 1] & 0xC0) == 0x80 &&
                       (bytes[b + 2] & 0xC0) == 0x80) {
                scalar = (char32_t(lead & 0x0F) << 12) | (char32_t(bytes[b + 1] & 0x3F) << 6) |
                         (bytes[b + 2] & 0x3F);
                if (scalar < 0x800)
                    scalar = 0; // overlong: not simple
                b += 3;
            } else {
                scalar = 0; // outside the basic plane, or malformed
            }
            const FuzzyText::UnitInfo& info = FuzzyText::unitInfo(char16_t(scalar));
            if (scalar < 0x80 || !info.simple) {
                handled = false;
                return std::nullopt;
            }
            key = info.key;
            flags = info.flags;
        }
        if (qi < count && key == wanted) {
            score = ScoreArithmetic::add(score, matchPoints(index, last, previous, flags));
            if (first < 0)
                first = index;
            last = index;
            if (++qi < count)
                wanted = query.keyAt(qi);
        }
        previous = flags;
    }
    if (qi != count) // also when the text has fewer characters than the query
        return std::nullopt;
    score = ScoreArithmetic::subtract(score, ScoreArithmetic::unmatchedPenalty(index, count));
    return ScoreArithmetic::subtract(score, ScoreArithmetic::latePenalty(first));
}

template <bool WithPositions>
std::optional<Match> walkPrepared(const FuzzyQuery& query, const FuzzyText& candidate)
{
    if (candidate.isAscii()) {
        const QByteArray& bytes = candidate.asciiBytes();
        return walk<WithPositions>(
            query, AsciiCandidate{reinterpret_cast<const unsigned char*>(bytes.constData()),
                                  bytes.size()});
    }
    return walk<WithPositions>(query, PreparedCandidate{candidate});
}

std::optional<qint64> scoreOf(const std::optional<Match>& m)
{
    return m ? std::optional<qint64>(m->score) : std::nullopt;
}

} // namespace

std::optional<Match> match(const FuzzyQuery& query, const FuzzyText& candidate)
{
    return walkPrepared<true>(query, candidate);
}

std::optional<qint64> matchScore(const FuzzyQuery& query, const FuzzyText& candidate)
{
    return scoreOf(walkPrepared<false>(query, candidate));
}

std::optional<qint64> matchScore(const FuzzyQuery& query, QByteArrayView utf8Candidate)
{
    if (query.isEmpty())
        return 0;
    bool handled = false;
    const auto score = walkUtf8(query, reinterpret_cast<const unsigned char*>(utf8Candidate.data()),
                                utf8Candidate.size(), handled);
    if (handled)
        return score;
    return matchScore(query, FuzzyText(QString::fromUtf8(utf8Candidate)));
}

std::optional<qint64> score(const FuzzyQuery& searchTerm, const FuzzyShortcut& item)
{
    if (searchTerm.isEmpty())
        return 0;

    std::optional<qint64> best;
    if (const auto name = matchScore(searchTerm, item.name))
        best = ScoreArithmetic::add(*name, kNameBonus);

    const auto consider = [&](const FuzzyText& field) {
        const auto fieldScore = matchScore(searchTerm, field);
        if (fieldScore && (!best || *fieldScore > *best))
            best = fieldScore;
    };
    consider(item.chord);
    consider(item.detail);
    for (const FuzzyText& tag : item.tags)
        consider(tag);
    return best;
}

bool matches(const FuzzyQuery& searchTerm, const FuzzyShortcut& item)
{
    if (searchTerm.isEmpty())
        return true;
    const auto found = [&](const FuzzyText& field) { return holdsPrepared(searchTerm, field); };
    return found(item.name) || found(item.chord) || found(item.detail) ||
           std::any_of(item.tags.cbegin(), item.tags.cend(), found);
}

} // namespace Tessaline::FuzzyMatch
