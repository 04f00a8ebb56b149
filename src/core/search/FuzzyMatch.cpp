// SPDX-License-Identifier: MIT
#include "search/FuzzyMatch.h"

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

} // namespace Tessaline::FuzzyMatch
