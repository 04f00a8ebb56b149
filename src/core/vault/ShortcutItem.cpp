// SPDX-License-Identifier: MIT
#include "vault/ShortcutItem.h"

namespace Tessaline {

QString ShortcutItem::id() const
{
    return name + QLatin1Char('|') + chord;
}

bool ShortcutItem::isScanned() const
{
    return (source && *source == QStringLiteral("scanned-menu")) ||
           (tags && tags->contains(QStringLiteral("scanned")));
}

QString ShortcutItem::dedupeKey() const
{
    return name.toLower() + QLatin1Char('|') + chord.toLower();
}

QString ShortcutItem::detailText() const
{
    if (note && !note->isEmpty())
        return *note;
    if (menu && !menu->isEmpty())
        return *menu;
    if (tags && !tags->isEmpty())
        return tags->join(QStringLiteral(" / "));
    return QStringLiteral("Useful desktop shortcut");
}

namespace {

// Optional fields hash a presence marker first, then the value.
template <typename T>
size_t hashOptional(QtPrivate::QHashCombine& combine, size_t seed, const std::optional<T>& value)
{
    seed = combine(seed, value.has_value());
    return value ? combine(seed, *value) : seed;
}

} // namespace

size_t qHash(const ShortcutItem& item, size_t seed) noexcept
{
    QtPrivate::QHashCombine combine;
    seed = combine(seed, item.name);
    seed = combine(seed, item.chord);
    seed = hashOptional(combine, seed, item.favorite);
    seed = hashOptional(combine, seed, item.menu);
    seed = combine(seed, item.tags.has_value());
    if (item.tags) {
        seed = combine(seed, item.tags->size());
        for (const QString& tag : *item.tags)
            seed = combine(seed, tag);
    }
    seed = hashOptional(combine, seed, item.note);
    seed = hashOptional(combine, seed, item.source);
    return seed;
}

} // namespace Tessaline
