// SPDX-License-Identifier: MIT
// Feeds a key binding and a menu item's title, split at the first NUL, to the reader of the
// key bindings accessible menu items report: once as given (Qt's key-sequence text, or GTK's
// whole "mnemonic;path;accelerator"), and once as the accelerator field of a GTK binding.
// Every equivalent it gives must be one the menu scanner can draw.
#include "FuzzInput.h"

#include "platform/atspi/AtspiKeyBinding.h"
#include "scan/MenuReader.h"

using namespace Tessaline;

namespace {

void check(const std::optional<MenuKeyEquivalent>& key, const QString& binding)
{
    if (!key)
        return;
    FuzzInput::require(key->character.has_value() != key->virtualKey.has_value(),
                       "an equivalent is either a character or a virtual key", binding);
    FuzzInput::require(key->modifiers >= 0 && key->modifiers <= 0xf,
                       "only the four menu modifier bits are set", binding);
    if (key->character)
        FuzzInput::require(!key->character->isEmpty(), "a key character is never empty", binding);
    if (key->virtualKey)
        FuzzInput::require(MenuReader::virtualKeySymbol(*key->virtualKey).has_value(),
                           "a virtual key is one the scanner has a name for", binding);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QList<QString> input = FuzzInput::fields(data, size, 2);
    const QString& binding = input.at(0);
    const QString& title = input.at(1);

    check(AtspiKeyBinding::parse(binding, title), binding);
    const QString gtk = QStringLiteral("m;<Alt>f:m;") + binding;
    check(AtspiKeyBinding::parse(gtk, title), gtk);
    return 0;
}
