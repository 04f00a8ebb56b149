// SPDX-License-Identifier: MIT
#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringList>

#include <optional>

namespace Tessaline {

/// One shortcut of the vault: what it does (`name`) and its key chord in display form
/// (modifier symbols ⌃ ⌥ ⇧ ⌘ then the key, single spaces: "⌃ S").
struct ShortcutItem
{
    QString name;
    QString chord;
    std::optional<bool> favorite;
    std::optional<QString> menu;
    std::optional<QStringList> tags;
    std::optional<QString> note;
    std::optional<QString> source;

    /// Identity in lists: name + "|" + chord.
    QString id() const;
    /// The line shown under the name: the note, else the menu path, else the tags joined with
    /// " / ", else "Useful desktop shortcut".
    QString detailText() const;
    bool isFavorite() const { return favorite.value_or(false); }
    /// Whether the item came from a menu scan: its source is "scanned-menu" or it is tagged
    /// "scanned".
    bool isScanned() const;
    /// The key under which lists keep one item per action: lower-cased name + "|" + lower-cased
    /// chord.
    QString dedupeKey() const;

    friend bool operator==(const ShortcutItem&, const ShortcutItem&) = default;
};

size_t qHash(const ShortcutItem& item, size_t seed = 0) noexcept;

} // namespace Tessaline
