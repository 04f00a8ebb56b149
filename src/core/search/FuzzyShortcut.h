// SPDX-License-Identifier: MIT
#pragma once

#include "search/FuzzyText.h"

#include <QList>

namespace Tessaline {

struct ShortcutItem;

/// The searchable fields of one shortcut, prepared for matching: name, chord, detail text and
/// each tag, in the order FuzzyMatch::score considers them.
struct FuzzyShortcut
{
    FuzzyShortcut() = default;
    explicit FuzzyShortcut(const ShortcutItem& item);

    FuzzyText name;
    FuzzyText chord;
    FuzzyText detail;
    QList<FuzzyText> tags;
};

} // namespace Tessaline
