// SPDX-License-Identifier: MIT
#include "commands/ChordKeystrokes.h"

#include <QHash>
#include <QStringList>

namespace Tessaline {

namespace {

const QLatin1String kSequenceSeparator(", ");

std::optional<int> modifierOf(const QString& token)
{
    static const QHash<QString, int> modifiers = {
        {QStringLiteral("⌃"), KeyStroke::Control},   {QStringLiteral("⌥"), KeyStroke::Alt},
        {QStringLiteral("⇧"), KeyStroke::Shift},     {QStringLiteral("⌘"), KeyStroke::Super},
        {QStringLiteral("Super"), KeyStroke::Super},
    };
    const auto found = modifiers.constFind(token);
    if (found == modifiers.constEnd())
        return std::nullopt;
    return *found;
}

// The keysym name of a key the chords write by name or symbol; the Delete of a menu is the
// Delete key of Linux keyboards, ⌫ is BackSpace.
QString keyName(const QString& key)
{
    static const QHash<QString, QString> names = {
        {QStringLiteral("Return"), QStringLiteral("Return")},
        {QStringLiteral("↩"), QStringLiteral("Return")},
        {QStringLiteral("Enter"), QStringLiteral("Return")},
        {QStringLiteral("Tab"), QStringLiteral("Tab")},
        {QStringLiteral("⇥"), QStringLiteral("Tab")},
        {QStringLiteral("Esc"), QStringLiteral("Escape")},
        {QStringLiteral("⎋"), QStringLiteral("Escape")},
        {QStringLiteral("Space"), QStringLiteral("space")},
        {QStringLiteral("Delete"), QStringLiteral("Delete")},
        {QStringLiteral("⌦"), QStringLiteral("Delete")},
        {QStringLiteral("⌫"), QStringLiteral("BackSpace")},
        {QStringLiteral("Backspace"), QStringLiteral("BackSpace")},
        {QStringLiteral("←"), QStringLiteral("Left")},
        {QStringLiteral("→"), QStringLiteral("Right")},
        {QStringLiteral("↑"), QStringLiteral("Up")},
        {QStringLiteral("↓"), QStringLiteral("Down")},
        {QStringLiteral("Page Up"), QStringLiteral("Page_Up")},
        {QStringLiteral("⇞"), QStringLiteral("Page_Up")},
        {QStringLiteral("Page Down"), QStringLiteral("Page_Down")},
        {QStringLiteral("⇟"), QStringLiteral("Page_Down")},
        {QStringLiteral("Home"), QStringLiteral("Home")},
        {QStringLiteral("↖"), QStringLiteral("Home")},
        {QStringLiteral("End"), QStringLiteral("End")},
        {QStringLiteral("↘"), QStringLiteral("End")},
    };
    if (const auto found = names.constFind(key); found != names.constEnd())
        return *found;
    if (key.toUcs4().size() == 1)
        return key.toLower();
    // Function keys and any other keysym name ("F5", "KP_Add", "Insert") stay as written.
    return key;
}

std::optional<KeyStroke> strokeOf(const QString& chord)
{
    const QStringList tokens = chord.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    KeyStroke stroke;
    qsizetype at = 0;
    // Every token but the last may be a modifier; a lone "⇧" is the key itself.
    for (; at + 1 < tokens.size(); ++at) {
        const std::optional<int> modifier = modifierOf(tokens.at(at));
        if (!modifier)
            break;
        stroke.modifiers |= *modifier;
    }
    const QString key = tokens.mid(at).join(QLatin1Char(' '));
    if (key.isEmpty())
        return std::nullopt;
    stroke.key = keyName(key);
    return stroke;
}

} // namespace

std::optional<QList<KeyStroke>> ChordKeystrokes::fromChord(const QString& chord)
{
    // "⌃ ," ends in its key; only a comma followed by a space and more separates chords.
    QList<KeyStroke> strokes;
    qsizetype from = 0;
    const QString text = chord.trimmed();
    while (from <= text.size()) {
        qsizetype end = text.indexOf(kSequenceSeparator, from);
        // A comma key at the start of a chord ("⌃ K, , ...") is not a separator.
        while (end == from)
            end = text.indexOf(kSequenceSeparator, end + 1);
        const QString part = end < 0 ? text.mid(from) : text.mid(from, end - from);
        const std::optional<KeyStroke> stroke = strokeOf(part);
        if (!stroke)
            return std::nullopt;
        strokes.append(*stroke);
        if (end < 0)
            break;
        from = end + kSequenceSeparator.size();
    }
    if (strokes.isEmpty())
        return std::nullopt;
    return strokes;
}

} // namespace Tessaline
