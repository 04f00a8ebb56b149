// SPDX-License-Identifier: MIT
#include "vault/ChordText.h"

#include <hotkey/Key.h>

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

// Modifier words beyond those a search understands, which a chord written by hand may use.
std::optional<int> chordModifierWord(const QString& lower)
{
    if (const auto modifier = typedModifiers().constFind(lower);
        modifier != typedModifiers().constEnd())
        return *modifier;
    static const QHash<QString, int> words = {
        {QStringLiteral("option"), 1},
        {QStringLiteral("opt"), 1},
        {QStringLiteral("cmd"), 3},
        {QStringLiteral("command"), 3},
    };
    if (const auto modifier = words.constFind(lower); modifier != words.constEnd())
        return *modifier;
    return std::nullopt;
}

// Key names and symbols a written chord may use, with the key's stored name, keyed by the
// name lower-cased without spaces; the names a search understands come first.
std::optional<QString> storedKeyName(const QString& compact)
{
    if (const auto key = typedKeys().constFind(compact); key != typedKeys().constEnd())
        return *key;
    static const QHash<QString, QString> names = {
        {QStringLiteral("⎋"), QStringLiteral("Esc")},
        {QStringLiteral("⌫"), QStringLiteral("Delete")},
        {QStringLiteral("⌦"), QStringLiteral("Delete")},
        {QStringLiteral("forwarddelete"), QStringLiteral("Delete")},
        {QStringLiteral("↩"), QStringLiteral("Return")},
        {QStringLiteral("⏎"), QStringLiteral("Return")},
        {QStringLiteral("⌅"), QStringLiteral("Return")},
        {QStringLiteral("⇥"), QStringLiteral("Tab")},
        {QStringLiteral("␣"), QStringLiteral("Space")},
        {QStringLiteral("↖"), QStringLiteral("Home")},
        {QStringLiteral("↘"), QStringLiteral("End")},
        {QStringLiteral("⇞"), QStringLiteral("Page Up")},
        {QStringLiteral("⇟"), QStringLiteral("Page Down")},
        {QStringLiteral("leftarrow"), QStringLiteral("←")},
        {QStringLiteral("rightarrow"), QStringLiteral("→")},
        {QStringLiteral("uparrow"), QStringLiteral("↑")},
        {QStringLiteral("downarrow"), QStringLiteral("↓")},
        {QStringLiteral("ins"), QStringLiteral("Insert")},
        {QStringLiteral("prtsc"), QStringLiteral("Print")},
        {QStringLiteral("volumemute"), QStringLiteral("Mute")},
    };
    if (const auto key = names.constFind(compact); key != names.constEnd())
        return *key;
    return std::nullopt;
}

// The stored name of the key a chord names: one character upper-cased, a known name or
// symbol as the vault writes it, a function key as "F5", any other name with each word
// capitalised ("volume up" -> "Volume Up").
QString canonicalKey(const QString& name)
{
    QString key = name;
    key.remove(QChar(0xFE0E)); // the text-style variation selector after "↩"
    QString compact = key.toLower();
    compact.remove(QLatin1Char(' '));
    if (const std::optional<QString> stored = storedKeyName(compact))
        return *stored;
    // Case is mapped a character at a time, so a key never grows ("ß" stays one key, where
    // QString::toUpper() would make it "SS") and the result is its own canonical form.
    if (key.size() == 1)
        return QString(key.at(0).toUpper());
    if (compact.size() >= 2 && compact.size() <= 3 && compact.at(0) == QLatin1Char('f')) {
        bool number = false;
        const int n = QStringView(compact).mid(1).toInt(&number);
        if (number && n >= 1 && n <= 35)
            return QLatin1Char('F') + QString::number(n);
    }
    QStringList words = key.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString& word : words)
        word = QString(word.at(0).toUpper()) + word.mid(1).toLower();
    return words.join(QLatin1Char(' '));
}

bool isChordSeparator(QChar c)
{
    return c == QLatin1Char('+') || c.isSpace();
}

// One chord in either written form, canonical; none when it names no key.
std::optional<QString> normalizedOne(QStringView text)
{
    text = text.trimmed();
    // A "+" that ends the text after a separator or a modifier symbol is the plus key
    // ("Ctrl++", "⌃ +", "+").
    bool plusKey = false;
    if (text.endsWith(QLatin1Char('+'))) {
        const QStringView before = text.chopped(1);
        if (before.isEmpty() || isChordSeparator(before.back()) ||
            modifierOfSymbol(before.back())) {
            plusKey = true;
            text = before;
        }
    }
    std::array<bool, kModifiers.size()> held{};
    QStringList keyWords;
    qsizetype at = 0;
    while (at < text.size()) {
        if (isChordSeparator(text.at(at))) {
            ++at;
            continue;
        }
        qsizetype end = at;
        while (end < text.size() && !isChordSeparator(text.at(end)))
            ++end;
        // Modifier symbols may be written without spaces ("⌃⇧S").
        while (at < end) {
            const std::optional<int> modifier = modifierOfSymbol(text.at(at));
            if (!modifier)
                break;
            held[*modifier] = true;
            ++at;
        }
        if (at < end) {
            const QString word = text.mid(at, end - at).toString();
            if (const std::optional<int> modifier = chordModifierWord(word.toLower()))
                held[*modifier] = true;
            else
                keyWords.append(word);
        }
        at = end;
    }
    if (plusKey)
        keyWords.append(QStringLiteral("+"));
    if (keyWords.isEmpty())
        return std::nullopt;
    // No key's name holds a control character, a modifier symbol (they stand before the key;
    // one at the end of a key's name would make a following ", " read as the comma key) or the
    // ", " that separates the chords of a sequence: such text is no chord.
    for (const QString& word : std::as_const(keyWords)) {
        for (const QChar c : word) {
            if ((!c.isPrint() && !c.isSurrogate()) || modifierOfSymbol(c))
                return std::nullopt;
        }
    }
    const QString key = keyWords.join(QLatin1Char(' '));
    if (key.contains(QLatin1String(", ")))
        return std::nullopt;
    QString chord;
    for (std::size_t i = 0; i < kModifiers.size(); ++i) {
        if (held[i]) {
            chord.append(kModifiers[i].symbol);
            chord.append(QLatin1Char(' '));
        }
    }
    chord.append(canonicalKey(key));
    return chord;
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

std::optional<QString> normalized(const QString& chord)
{
    // A sequence is written "⌃ K, ⌃ C" or "Ctrl+K, Ctrl+C"; a comma right after the modifiers
    // ("⌃ ,", "Ctrl+,") is the comma key itself.
    QStringList chords;
    qsizetype start = 0;
    for (qsizetype at = chord.indexOf(QLatin1String(", ")); at >= 0;
         at = chord.indexOf(QLatin1String(", "), at + 1)) {
        const QStringView before = QStringView(chord).mid(start, at - start).trimmed();
        if (before.isEmpty() || before.endsWith(QLatin1Char('+')) ||
            modifierOfSymbol(before.back()))
            continue;
        const std::optional<QString> one = normalizedOne(before);
        if (!one)
            return std::nullopt;
        chords.append(*one);
        start = at + 2;
    }
    const std::optional<QString> last = normalizedOne(QStringView(chord).mid(start));
    if (!last)
        return std::nullopt;
    chords.append(*last);
    return chords.join(QLatin1String(", "));
}

std::optional<QString> fromKeyCode(quint32 carbonKeyCode, quint32 carbonModifiers)
{
    const std::optional<HotKey::Key> key = HotKey::keyFromCarbonKeyCode(carbonKeyCode);
    if (!key)
        return std::nullopt;
    // Carbon's bits by the modifiers' fixed order: control, option, shift, command.
    constexpr std::array<quint32, kModifiers.size()> bits{0x1000, 0x800, 0x200, 0x100};
    QString chord;
    for (std::size_t i = 0; i < kModifiers.size(); ++i) {
        if (carbonModifiers & bits[i]) {
            chord.append(kModifiers[i].symbol);
            chord.append(QLatin1Char(' '));
        }
    }
    chord.append(HotKey::menuKeyName(*key).value_or(HotKey::keyDescription(*key)));
    return normalizedOne(chord);
}

} // namespace Tessaline::ChordText
