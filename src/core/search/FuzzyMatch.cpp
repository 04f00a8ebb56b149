// SPDX-License-Identifier: MIT
#include "search/FuzzyMatch.h"

#include "search/FuzzyQuery.h"
#include "search/FuzzyShortcut.h"
#include "search/FuzzyText.h"
#include "search/Graphemes.h"
#include "search/ScoreArithmetic.h"
#include "vault/ShortcutItem.h"

#include <QSet>

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
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8Candidate.data());
    const qsizetype size = utf8Candidate.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (bytes[i] >= 0x80 || bytes[i] == '\r')
            return matchScore(query, FuzzyText(QString::fromUtf8(utf8Candidate)));
    }
    return scoreOf(walk<false>(query, AsciiCandidate{bytes, size}));
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

} // namespace Tessaline::FuzzyMatch
