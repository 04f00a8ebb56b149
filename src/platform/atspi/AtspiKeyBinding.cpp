// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiKeyBinding.h"

#include "scan/MenuReader.h"

#include <QHash>
#include <QStringList>

#include <xkbcommon/xkbcommon.h>

namespace Tessaline::AtspiKeyBinding {

namespace {

constexpr int kShift = 1;
constexpr int kOption = 2;
constexpr int kControl = 4;
constexpr int kNoCommand = 8;

// A key as parsed from either toolkit: modifier mask bits (without the no-Command bit) plus a
// keysym name, and whether Super/Meta was held.
struct ParsedChord
{
    int modifiers = 0;
    bool super = false;
    QString keyName;
};

// Qt's key names that differ from the keysym names.
const QHash<QString, QString>& qtKeyNames()
{
    static const QHash<QString, QString> names = {
        {QStringLiteral("Del"), QStringLiteral("Delete")},
        {QStringLiteral("Backspace"), QStringLiteral("BackSpace")},
        {QStringLiteral("Esc"), QStringLiteral("Escape")},
        {QStringLiteral("Enter"), QStringLiteral("KP_Enter")},
        {QStringLiteral("Return"), QStringLiteral("Return")},
        {QStringLiteral("PgUp"), QStringLiteral("Page_Up")},
        {QStringLiteral("PgDown"), QStringLiteral("Page_Down")},
        {QStringLiteral("Ins"), QStringLiteral("Insert")},
        {QStringLiteral("Space"), QStringLiteral("space")},
    };
    return names;
}

// Modifier names of both toolkits.
bool applyModifier(const QString& name, ParsedChord& chord)
{
    const QString lower = name.toLower();
    if (lower == QStringLiteral("primary") || lower == QStringLiteral("control") ||
        lower == QStringLiteral("ctrl") || lower == QStringLiteral("ctl")) {
        chord.modifiers |= kControl;
    } else if (lower == QStringLiteral("alt") || lower == QStringLiteral("mod1")) {
        chord.modifiers |= kOption;
    } else if (lower == QStringLiteral("shift") || lower == QStringLiteral("shft")) {
        chord.modifiers |= kShift;
    } else if (lower == QStringLiteral("super") || lower == QStringLiteral("meta") ||
               lower == QStringLiteral("mod4") || lower == QStringLiteral("hyper")) {
        chord.super = true;
    } else {
        return false;
    }
    return true;
}

// "<Primary><Shift>n": modifiers in angle brackets, then the keysym name.
std::optional<ParsedChord> parseGtkAccelerator(const QString& accelerator)
{
    ParsedChord chord;
    qsizetype position = 0;
    while (position < accelerator.size() && accelerator.at(position) == QLatin1Char('<')) {
        const qsizetype close = accelerator.indexOf(QLatin1Char('>'), position);
        if (close < 0)
            return std::nullopt;
        if (!applyModifier(accelerator.mid(position + 1, close - position - 1), chord))
            return std::nullopt;
        position = close + 1;
    }
    chord.keyName = accelerator.mid(position).trimmed();
    if (chord.keyName.isEmpty())
        return std::nullopt;
    return chord;
}

// "Ctrl+Shift+N", "Ctrl++": modifiers joined with "+", the key last.
std::optional<ParsedChord> parseQtChord(const QString& text)
{
    ParsedChord chord;
    QString rest = text.trimmed();
    while (true) {
        const qsizetype plus = rest.indexOf(QLatin1Char('+'));
        if (plus <= 0 || plus == rest.size() - 1)
            break;
        ParsedChord probe = chord;
        if (!applyModifier(rest.left(plus), probe))
            break;
        chord = probe;
        rest = rest.mid(plus + 1);
    }
    if (rest.isEmpty())
        return std::nullopt;
    chord.keyName = qtKeyNames().value(rest, rest);
    return chord;
}

MenuKeyEquivalent equivalentOf(const ParsedChord& chord)
{
    MenuKeyEquivalent key;
    key.modifiers = chord.modifiers | (chord.super ? 0 : kNoCommand);
    if (const auto code = virtualKeyForKeysymName(chord.keyName)) {
        key.virtualKey = *code;
        return key;
    }
    if (chord.keyName.size() == 1) {
        key.character = chord.keyName;
        return key;
    }
    const QByteArray name = chord.keyName.toUtf8();
    const xkb_keysym_t keysym = xkb_keysym_from_name(name.constData(), XKB_KEYSYM_NO_FLAGS);
    if (keysym != XKB_KEY_NoSymbol) {
        const char32_t codePoint = xkb_keysym_to_utf32(keysym);
        if (codePoint >= 0x20 && codePoint != 0x7f) {
            key.character = QString::fromUcs4(&codePoint, 1);
            return key;
        }
    }
    key.character = chord.keyName;
    return key;
}

// The display form of one chord of a multi-chord sequence, as the scanner renders chords.
QString displayOfChord(const ParsedChord& chord)
{
    const MenuKeyEquivalent key = equivalentOf(chord);
    QString symbol;
    if (key.virtualKey)
        symbol = MenuReader::virtualKeySymbol(*key.virtualKey).value_or(chord.keyName);
    else
        symbol = MenuReader::normalizedKey(key.character.value_or(chord.keyName));
    return MenuReader::displayChord(symbol, key.modifiers);
}

// True when every ";" of `binding` is a key of its own ("Ctrl+;", ";", "Ctrl+K, Ctrl+;"): Qt's
// key-sequence text, which GTK's "mnemonic;path;accelerator" never is (GTK writes the key as
// "semicolon" and its separators stand between fields).
bool semicolonsAreKeys(const QString& binding)
{
    const QLatin1String chordSeparator(", ");
    for (qsizetype at = binding.indexOf(QLatin1Char(';')); at >= 0;
         at = binding.indexOf(QLatin1Char(';'), at + 1)) {
        const bool startsChord = at == 0 || binding.at(at - 1) == QLatin1Char('+') ||
                                 binding.left(at).endsWith(chordSeparator);
        const bool endsChord =
            at == binding.size() - 1 || QStringView(binding).mid(at + 1).startsWith(chordSeparator);
        if (!startsChord || !endsChord)
            return false;
    }
    return true;
}

} // namespace

std::optional<int> virtualKeyForKeysymName(const QString& name)
{
    static const QHash<QString, int> codes = {
        {QStringLiteral("Return"), 36},     {QStringLiteral("KP_Enter"), 76},
        {QStringLiteral("Tab"), 48},        {QStringLiteral("space"), 49},
        {QStringLiteral("BackSpace"), 51},  {QStringLiteral("Delete"), 117},
        {QStringLiteral("Escape"), 53},     {QStringLiteral("F5"), 96},
        {QStringLiteral("F6"), 97},         {QStringLiteral("F7"), 98},
        {QStringLiteral("F3"), 99},         {QStringLiteral("F8"), 100},
        {QStringLiteral("F9"), 101},        {QStringLiteral("F11"), 103},
        {QStringLiteral("F10"), 109},       {QStringLiteral("F12"), 111},
        {QStringLiteral("Home"), 115},      {QStringLiteral("Page_Up"), 116},
        {QStringLiteral("Prior"), 116},     {QStringLiteral("F4"), 118},
        {QStringLiteral("End"), 119},       {QStringLiteral("F2"), 120},
        {QStringLiteral("Page_Down"), 121}, {QStringLiteral("Next"), 121},
        {QStringLiteral("F1"), 122},        {QStringLiteral("Left"), 123},
        {QStringLiteral("Right"), 124},     {QStringLiteral("Down"), 125},
        {QStringLiteral("Up"), 126},
    };
    const auto found = codes.constFind(name);
    if (found == codes.constEnd())
        return std::nullopt;
    return *found;
}

std::optional<MenuKeyEquivalent> parse(const QString& binding, const QString& title)
{
    if (binding.contains(QLatin1Char(';')) && !semicolonsAreKeys(binding)) {
        const QStringList fields = binding.split(QLatin1Char(';'));
        if (fields.size() < 3)
            return std::nullopt;
        const QString accelerator = fields.at(2).trimmed();
        if (accelerator.isEmpty())
            return std::nullopt;
        const auto chord = parseGtkAccelerator(accelerator);
        if (!chord)
            return std::nullopt;
        return equivalentOf(*chord);
    }

    const QString text = binding.trimmed();
    if (text.isEmpty())
        return std::nullopt;
    const QStringList sequence = text.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    if (sequence.size() > 1) {
        QStringList shown;
        for (const QString& part : sequence) {
            const auto chord = parseQtChord(part);
            if (!chord)
                return std::nullopt;
            shown.append(displayOfChord(*chord));
        }
        MenuKeyEquivalent key;
        key.character = shown.join(QStringLiteral(", "));
        key.modifiers = kNoCommand;
        return key;
    }
    const auto chord = parseQtChord(text);
    if (!chord)
        return std::nullopt;
    // Qt reports an item's mnemonic as Alt+<letter> when it has no shortcut.
    if (chord->modifiers == kOption && !chord->super && chord->keyName.size() == 1 &&
        chord->keyName.at(0).isLetterOrNumber() &&
        title.contains(chord->keyName, Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    return equivalentOf(*chord);
}

} // namespace Tessaline::AtspiKeyBinding
