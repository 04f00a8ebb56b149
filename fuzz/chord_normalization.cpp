// SPDX-License-Identifier: MIT
// Feeds the chord normalization of scanned menus and the chord texts of the vault (their display
// and their canonical form for lookups): the first byte is a menu modifier mask, the second a
// virtual key code (signed), and the rest, split at the first NUL, a menu command character or
// chord, and a search query.
#include "FuzzInput.h"

#include "scan/MenuReader.h"
#include "vault/ChordText.h"

using namespace Tessaline;

namespace {

// How many symbols displayChord() puts before the key for a modifier mask.
int symbolCount(int modifiers)
{
    return ((modifiers & 4) ? 1 : 0) + ((modifiers & 2) ? 1 : 0) + ((modifiers & 1) ? 1 : 0) +
           ((modifiers & 8) ? 0 : 1);
}

void checkDisplayChord(const QString& key, int modifiers)
{
    const QString chord = MenuReader::displayChord(key, modifiers);
    FuzzInput::require(key.isEmpty() || chord.endsWith(key), "a display chord ends with its key",
                       chord);
    FuzzInput::require(chord.size() == key.size() + 2 * symbolCount(modifiers),
                       "a display chord is one symbol and a space per modifier, then the key",
                       chord);
    const QString words = ChordText::toWords(chord);
    FuzzInput::require(ChordText::display(chord, KeyNameStyle::Words) == words,
                       "chords in words are toWords()", chord);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int modifiers = data[0];
    const int code = static_cast<std::int8_t>(data[1]);
    const QList<QString> input = FuzzInput::fields(data + 2, size - 2, 2);
    const QString& text = input.at(0);
    const QString& query = input.at(1);

    const QString key = MenuReader::normalizedKey(text);
    if (text.size() != 1)
        FuzzInput::require(key == text, "only single characters are renamed", text);
    else
        FuzzInput::require(!key.isEmpty(), "a single character has a key name", text);
    checkDisplayChord(key, modifiers);

    const std::optional<QString> symbol = MenuReader::virtualKeySymbol(code);
    if (symbol) {
        FuzzInput::require(code >= 36 && code <= 126 && !symbol->isEmpty(),
                           "only codes 36 to 126 have a symbol", QString::number(code));
        checkDisplayChord(*symbol, modifiers);
        // A named key's chord and the same chord in words meet in one canonical text.
        const QString chord = MenuReader::displayChord(*symbol, modifiers);
        const std::optional<QString> canonical = ChordText::normalized(chord);
        FuzzInput::require(canonical.has_value(), "a named key's chord names a key", chord);
        FuzzInput::require(ChordText::normalized(ChordText::toWords(chord)) == canonical,
                           "a chord in words and in symbols normalize alike", chord);
    }

    // The canonical text of any text is its own canonical text.
    if (const std::optional<QString> canonical = ChordText::normalized(text))
        FuzzInput::require(ChordText::normalized(*canonical) == canonical,
                           "normalizing twice changes nothing", text);

    // In symbols every stored character stays but Super, which has no symbol of its own there.
    const QString symbols = ChordText::display(text, KeyNameStyle::Symbols);
    const QChar super(0x2318);
    if (text.contains(super))
        FuzzInput::require(!symbols.contains(super) && symbols.contains(QLatin1String("Super")),
                           "Super is written as a word among symbols", text);
    else
        FuzzInput::require(symbols == text, "chords in symbols are shown as stored", text);
    ChordText::toWords(text);
    if (const std::optional<QString> chord = ChordText::symbolQuery(query))
        FuzzInput::require(!chord->isEmpty(), "a query naming a modifier gives a chord", query);
    return 0;
}
