// SPDX-License-Identifier: MIT
#include "vault/ChordText.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <array>

namespace Tessaline::ChordText {

namespace {

struct Modifier
{
    QChar symbol;
    QLatin1String word;
};

// In the order chords are written.
constexpr std::array<Modifier, 4> kModifiers{{
    {QChar(0x2303), QLatin1String("Ctrl")},
    {QChar(0x2325), QLatin1String("Alt")},
    {QChar(0x21E7), QLatin1String("Shift")},
    {QChar(0x2318), QLatin1String("Super")},
}};

std::optional<int> modifierOfSymbol(QChar symbol)
{
    for (int i = 0; i < int(kModifiers.size()); ++i) {
        if (kModifiers[i].symbol == symbol)
            return i;
    }
    return std::nullopt;
}

// Key names the stored form writes as symbols, with their words.
const QHash<QString, QString>& keyWords()
{
    static const QHash<QString, QString> words = {
        {QStringLiteral("←"), QStringLiteral("Left")},
        {QStringLiteral("→"), QStringLiteral("Right")},
        {QStringLiteral("↑"), QStringLiteral("Up")},
        {QStringLiteral("↓"), QStringLiteral("Down")},
    };
    return words;
}

// Modifier words a user may type, by modifier.
const QHash<QString, int>& typedModifiers()
{
    static const QHash<QString, int> words = {
        {QStringLiteral("ctrl"), 0}, {QStringLiteral("control"), 0}, {QStringLiteral("ctl"), 0},
        {QStringLiteral("alt"), 1},  {QStringLiteral("shift"), 2},   {QStringLiteral("super"), 3},
        {QStringLiteral("meta"), 3}, {QStringLiteral("win"), 3},     {QStringLiteral("logo"), 3},
    };
    return words;
}

// Key words a user may type, with the key's stored name.
const QHash<QString, QString>& typedKeys()
{
    static const QHash<QString, QString> keys = {
        {QStringLiteral("left"), QStringLiteral("←")},
        {QStringLiteral("right"), QStringLiteral("→")},
        {QStringLiteral("up"), QStringLiteral("↑")},
        {QStringLiteral("down"), QStringLiteral("↓")},
        {QStringLiteral("esc"), QStringLiteral("Esc")},
        {QStringLiteral("escape"), QStringLiteral("Esc")},
        {QStringLiteral("del"), QStringLiteral("Delete")},
        {QStringLiteral("delete"), QStringLiteral("Delete")},
        {QStringLiteral("backspace"), QStringLiteral("Delete")},
        {QStringLiteral("enter"), QStringLiteral("Return")},
        {QStringLiteral("return"), QStringLiteral("Return")},
        {QStringLiteral("space"), QStringLiteral("Space")},
        {QStringLiteral("tab"), QStringLiteral("Tab")},
        {QStringLiteral("home"), QStringLiteral("Home")},
        {QStringLiteral("end"), QStringLiteral("End")},
        {QStringLiteral("pgup"), QStringLiteral("Page Up")},
        {QStringLiteral("pageup"), QStringLiteral("Page Up")},
        {QStringLiteral("pgdown"), QStringLiteral("Page Down")},
        {QStringLiteral("pgdn"), QStringLiteral("Page Down")},
        {QStringLiteral("pagedown"), QStringLiteral("Page Down")},
        {QStringLiteral("plus"), QStringLiteral("+")},
        {QStringLiteral("minus"), QStringLiteral("-")},
        {QStringLiteral("print"), QStringLiteral("Print")},
    };
    return keys;
}

// One chord of the stored form in words: its modifier symbols, then the key's name.
QString chordToWords(const QString& chord)
{
    QStringList parts;
    qsizetype at = 0;
    while (at < chord.size()) {
        const QChar c = chord.at(at);
        if (c == QLatin1Char(' ')) {
            ++at;
            continue;
        }
        const std::optional<int> modifier = modifierOfSymbol(c);
        if (!modifier)
            break;
        parts.append(kModifiers[*modifier].word);
        ++at;
    }
    const QString key = chord.mid(at);
    if (!key.isEmpty())
        parts.append(keyWords().value(key, key));
    return parts.join(QLatin1Char('+'));
}

bool holdsSymbols(const QString& chord)
{
    for (const Modifier& modifier : kModifiers) {
        if (chord.contains(modifier.symbol))
            return true;
    }
    for (auto it = keyWords().cbegin(); it != keyWords().cend(); ++it) {
        if (chord.contains(it.key()))
            return true;
    }
    return false;
}

} // namespace

QString display(const QString& chord, KeyNameStyle style)
{
    return style == KeyNameStyle::Words ? toWords(chord) : toSymbols(chord);
}

QString toSymbols(const QString& chord)
{
    const QChar super = kModifiers.back().symbol;
    if (!chord.contains(super))
        return chord;
    QString drawn;
    drawn.reserve(chord.size() + 8);
    for (qsizetype at = 0; at < chord.size(); ++at) {
        const QChar c = chord.at(at);
        if (c != super) {
            drawn.append(c);
            continue;
        }
        drawn.append(kModifiers.back().word);
        if (at + 1 < chord.size() && chord.at(at + 1) != QLatin1Char(' '))
            drawn.append(QLatin1Char(' '));
    }
    return drawn;
}

QString toWords(const QString& chord)
{
    if (!holdsSymbols(chord))
        return chord;
    // A sequence is written "⌃ K, ⌃ C"; a comma that is itself the key ("⌃ ,") stands alone
    // after the modifiers and is followed by nothing or by the sequence's ", ".
    QStringList words;
    qsizetype start = 0;
    for (qsizetype at = chord.indexOf(QLatin1String(", ")); at >= 0;
         at = chord.indexOf(QLatin1String(", "), at + 1)) {
        const QString before = chord.mid(start, at - start);
        // "⌃ , ..." : this comma is the key, not the separator.
        if (before.trimmed().isEmpty() ||
            (before.endsWith(QLatin1Char(' ')) && modifierOfSymbol(before.trimmed().back())))
            continue;
        words.append(chordToWords(before));
        start = at + 2;
    }
    words.append(chordToWords(chord.mid(start)));
    return words.join(QLatin1String(", "));
}

std::optional<QString> symbolQuery(const QString& query)
{
    static const QRegularExpression separators(QStringLiteral("[\\s+]+"));
    // "Page Up" and "Page Down" are one key each.
    static const QRegularExpression pageKey(QStringLiteral("\\bpage\\s+(up|down)\\b"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QString trimmed = query.trimmed().replace(pageKey, QStringLiteral("page\\1"));
    // "Ctrl++" names the plus key: keep a trailing "+" that follows another "+".
    const bool plusKey = trimmed.endsWith(QLatin1String("++"));
    QStringList tokens = trimmed.split(separators, Qt::SkipEmptyParts);
    if (plusKey)
        tokens.append(QStringLiteral("+"));

    std::array<bool, kModifiers.size()> held{};
    bool namedModifier = false;
    QStringList keys;
    for (const QString& token : std::as_const(tokens)) {
        const QString lower = token.toLower();
        if (const auto modifier = typedModifiers().constFind(lower);
            modifier != typedModifiers().constEnd()) {
            held[*modifier] = true;
            namedModifier = true;
            continue;
        }
        if (token.size() == 1) {
            if (const std::optional<int> modifier = modifierOfSymbol(token.at(0))) {
                held[*modifier] = true;
                continue;
            }
            keys.append(token.toUpper());
            continue;
        }
        if (const auto key = typedKeys().constFind(lower); key != typedKeys().constEnd()) {
            keys.append(*key);
            continue;
        }
        static const QRegularExpression functionKey(QStringLiteral("^f([1-9]|1[0-9]|20)$"));
        if (functionKey.match(lower).hasMatch()) {
            keys.append(lower.toUpper());
            continue;
        }
        keys.append(token);
    }
    if (!namedModifier)
        return std::nullopt;
    QStringList parts;
    for (std::size_t i = 0; i < kModifiers.size(); ++i) {
        if (held[i])
            parts.append(QString(kModifiers[i].symbol));
    }
    parts.append(keys);
    return parts.join(QLatin1Char(' '));
}

} // namespace Tessaline::ChordText
