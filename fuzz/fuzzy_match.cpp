// SPDX-License-Identifier: MIT
// Feeds a query and a shortcut (fields split at NULs: query, name, chord, menu, note, tags one
// per line) to the matcher and checks that every prepared path gives exactly what the plain
// path gives: matches of a query against a text, a shortcut's score as a whole, and whether it
// matches at all.
#include "FuzzInput.h"

#include "search/FuzzyMatch.h"
#include "search/FuzzyQuery.h"
#include "search/FuzzyShortcut.h"
#include "search/FuzzyText.h"
#include "vault/PreparedShortcut.h"
#include "vault/PreparedShortcutList.h"
#include "vault/ShortcutItem.h"
#include "vault/ShortcutSearch.h"

using namespace Tessaline;

namespace {

std::optional<QString> optionalText(const QString& text)
{
    return text.isEmpty() ? std::nullopt : std::optional<QString>(text);
}

QString describe(std::optional<qint64> score)
{
    return score ? QString::number(*score) : QStringLiteral("no match");
}

void checkTextMatch(const QString& query, const QString& candidate)
{
    const std::optional<FuzzyMatch::Match> plain = FuzzyMatch::match(query, candidate);
    const FuzzyQuery preparedQuery(query);
    const FuzzyText preparedText(candidate);
    const QString detail = query + QLatin1Char('\n') + candidate;

    FuzzInput::require(FuzzyMatch::match(preparedQuery, preparedText) == plain,
                       "a prepared match equals the plain one", detail);
    const std::optional<qint64> score = plain ? std::optional<qint64>(plain->score) : std::nullopt;
    FuzzInput::require(FuzzyMatch::matchScore(preparedQuery, preparedText) == score,
                       "the prepared score equals the plain one", detail);
    FuzzInput::require(FuzzyMatch::matchScore(preparedQuery, candidate.toUtf8()) == score,
                       "the score against UTF-8 equals the plain one", detail);
    if (!plain)
        return;
    FuzzInput::require(plain->positions.size() == preparedQuery.size(),
                       "one position per query character", detail);
    qint64 previous = -1;
    for (const qint64 position : plain->positions) {
        FuzzInput::require(position > previous && position < preparedText.size(),
                           "positions increase within the candidate", detail);
        previous = position;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QList<QString> input = FuzzInput::fields(data, size, 6);
    const QString& query = input.at(0);

    ShortcutItem item;
    item.name = input.at(1);
    item.chord = input.at(2);
    item.menu = optionalText(input.at(3));
    item.note = optionalText(input.at(4));
    if (!input.at(5).isEmpty())
        item.tags = input.at(5).split(QLatin1Char('\n'));
    // A second item from the same texts, so that the list is searched past its first row.
    ShortcutItem other;
    other.name = item.chord;
    other.chord = item.name;
    other.tags = QStringList{input.at(3), input.at(4)};

    checkTextMatch(query, item.name);
    checkTextMatch(query, item.chord);

    const FuzzyQuery searchTerm = FuzzyQuery::searchTerm(query);
    const PreparedShortcut::Query prepared = PreparedShortcut::Query::fromTyped(query);
    const PreparedShortcutList list({item, other});
    int index = 0;
    for (const ShortcutItem& shortcut : {item, other}) {
        const QString detail = query + QLatin1Char('\n') + shortcut.name + QLatin1Char('\n') +
                               shortcut.chord + QLatin1Char('\n') + shortcut.detailText();
        const FuzzyShortcut fuzzy(shortcut);
        const std::optional<qint64> fields = FuzzyMatch::score(query, shortcut);
        FuzzInput::require(FuzzyMatch::score(searchTerm, fuzzy) == fields,
                           "a prepared shortcut's field score equals the plain one",
                           detail + QLatin1Char('\n') + describe(fields));
        FuzzInput::require(FuzzyMatch::matches(searchTerm, fuzzy) == fields.has_value(),
                           "a prepared shortcut matches when the plain one scores", detail);

        const std::optional<qint64> score = ShortcutSearch::score(query, shortcut);
        FuzzInput::require(PreparedShortcut(shortcut).score(prepared) == score,
                           "a prepared shortcut scores as the plain search",
                           detail + QLatin1Char('\n') + describe(score));
        FuzzInput::require(list.score(index, prepared) == score,
                           "a prepared list scores as the plain search",
                           detail + QLatin1Char('\n') + describe(score));
        FuzzInput::require(list.matches(index, prepared) == score.has_value(),
                           "a prepared list matches when the plain search scores", detail);
        ++index;
    }
    return 0;
}
