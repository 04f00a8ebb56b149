// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QCollator>
#include <QList>
#include <QString>

#include <algorithm>

namespace Tessaline::VaultOrder {

/// The collator for names shown to the user: case-insensitive, in the current locale; when
/// the current locale is C/POSIX (which compares code points), in en_US instead, so that
/// accented names sort where people expect them.
QCollator nameCollator();

/// Stable sort of `list` by the name `nameOf` gives each element, in the order of
/// nameCollator().
template <typename List, typename NameOf>
void sortByName(List& list, NameOf nameOf)
{
    const QCollator collator = nameCollator();
    std::stable_sort(list.begin(), list.end(), [&collator, &nameOf](const auto& a, const auto& b) {
        return collator.compare(nameOf(a), nameOf(b)) < 0;
    });
}

/// Locale-aware, case-insensitive comparison of two names (<0, 0, >0).
int compareNames(const QString& a, const QString& b);

/// True when `a` comes before `b` in the vault order: favorites first, then by name.
bool lessThan(const ShortcutItem& a, const ShortcutItem& b, const QCollator& collator);

/// Stable sort of `items` into the vault order.
void sort(QList<ShortcutItem>& items);

} // namespace Tessaline::VaultOrder
