// SPDX-License-Identifier: MIT
#include "lookup/ShortcutLookup.h"

#include "lookup/ChordKeys.h"
#include "vault/ChordText.h"

namespace Tessaline {

ShortcutLookup::ShortcutLookup(const QList<AppShortcutPack>& packs,
                               const QList<ShortcutItem>& global,
                               const QList<DesktopShortcut>& desktop)
{
    ChordKeys keys;
    const auto addItem = [this, &keys](BoundShortcut::Origin origin, const QString& source,
                                       const ShortcutItem& item) {
        if (const std::optional<QString> chord = keys.of(item.chord))
            add({origin, source, item}, *chord);
    };
    for (const AppShortcutPack& pack : packs) {
        for (const ShortcutItem& item : pack.shortcuts)
            addItem(BoundShortcut::Origin::App, pack.name, item);
    }
    for (const ShortcutItem& item : global)
        addItem(BoundShortcut::Origin::Global, globalSource(), item);
    for (const DesktopShortcut& shortcut : desktop) {
        ShortcutItem item;
        item.name = shortcut.name;
        item.chord = shortcut.chord;
        item.note = desktopNote();
        if (const std::optional<QString> chord = keys.of(shortcut.chord))
            add({BoundShortcut::Origin::Desktop, shortcut.source, item}, *chord);
    }
}

QString ShortcutLookup::desktopNote()
{
    return QStringLiteral("The desktop takes this key");
}

QString ShortcutLookup::globalSource()
{
    return QStringLiteral("Global");
}

void ShortcutLookup::add(BoundShortcut shortcut, const QString& normalizedChord)
{
    m_byChord[normalizedChord].append(m_shortcuts.size());
    m_shortcuts.append(std::move(shortcut));
}

QList<BoundShortcut> ShortcutLookup::which(const QString& chord) const
{
    const std::optional<QString> key = ChordText::normalized(chord);
    if (!key)
        return {};
    const auto found = m_byChord.constFind(*key);
    if (found == m_byChord.constEnd())
        return {};
    QList<BoundShortcut> bound;
    bound.reserve(found->size());
    for (const qsizetype index : *found)
        bound.append(m_shortcuts.at(index));
    return bound;
}

} // namespace Tessaline
