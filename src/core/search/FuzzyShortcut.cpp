// SPDX-License-Identifier: MIT
#include "search/FuzzyShortcut.h"

#include "vault/ShortcutItem.h"

namespace Tessaline {

FuzzyShortcut::FuzzyShortcut(const ShortcutItem& item)
    : name(item.name), chord(item.chord), detail(item.detailText())
{
    if (item.tags) {
        tags.reserve(item.tags->size());
        for (const QString& tag : *item.tags)
            tags.append(FuzzyText(tag));
    }
}

} // namespace Tessaline
