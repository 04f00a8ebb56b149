// SPDX-License-Identifier: MIT
#include "vault/VaultOrder.h"

#include <QLocale>

#include <algorithm>

namespace Tessaline::VaultOrder {

QCollator nameCollator()
{
    QLocale locale;
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

int compareNames(const QString& a, const QString& b)
{
    return nameCollator().compare(a, b);
}

bool lessThan(const ShortcutItem& a, const ShortcutItem& b, const QCollator& collator)
{
    const bool favoriteA = a.isFavorite();
    const bool favoriteB = b.isFavorite();
    if (favoriteA != favoriteB)
        return favoriteA;
    return collator.compare(a.name, b.name) < 0;
}

void sort(QList<ShortcutItem>& items)
{
    const QCollator collator = nameCollator();
    std::stable_sort(items.begin(), items.end(),
                     [&collator](const ShortcutItem& a, const ShortcutItem& b) {
                         return lessThan(a, b, collator);
                     });
}

} // namespace Tessaline::VaultOrder
